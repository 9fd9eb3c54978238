#include "picture_world.h"

#include "entry/demo/demo_answers.h"
#include "support/wait_until.h"

namespace velarc {

namespace {

using World = PictureWorld;

const QString kSentence = u"The harbour ferry was late again, and the crew blamed the tide. "_s;

GenerationDebugInfo someInfo()
{
    return {u"POST https://api.openai.com/v1/responses\n\n{\n  \"model\": \"gpt-4.1-mini\",\n"
            "  \"input\": \""_s
            + kSentence.repeated(12) + u"\"\n}"_s,
        u"{\n  \"id\": \"resp_0123456789\",\n  \"status\": \"completed\",\n  \"output\": [\n"_s
            + u"    { \"type\": \"message\" },\n"_s.repeated(20) + u"  ]\n}"_s,
        {{u"Provider"_s, u"OpenAI"_s}, {u"Model"_s, u"gpt-4.1-mini"_s},
            {u"Endpoint"_s, u"https://api.openai.com/v1/responses"_s}, {u"Request ID"_s, QString()},
            {u"A fact of a long name"_s, kSentence.repeated(3)}}};
}

void show(World &world, ResultPayload payload)
{
    world.viewModel->setActiveProviderLabel(u"OpenAI"_s);
    world.viewModel->setLatestRunDebugInfo(someInfo());
    world.viewModel->setEngineState(EngineResult{std::move(payload), u"OpenAI"_s});
    world.viewModel->setHomePhase(HomePhase::Output);
    world.settle();
}

void fail(World &world, const QString &message, const QString &technical)
{
    world.viewModel->setEngineState(EngineError{message, technical});
    world.viewModel->setHomePhase(HomePhase::Output);
    world.settle();
}

void showPicture(World &world, const QString &model)
{
    show(world, demoAnswer(AIProvider::OpenAI, model, {}).payload);
    static_cast<void>(waitUntil([&] {
        return world.screens->result()->isPictureBroken()
            || !world.screens->result()->picture().isEmpty();
    }));
    world.settle();
}

void set(World &world, const char *field, const QVariant &value)
{
    world.screens->result()->setProperty(field, value);
    world.settle();
}

void showDetails(World &world, ResultPresenter::DebugTab tab)
{
    show(world, TextPayload{kSentence.repeated(3)});
    set(world, "isDetailsExpanded", true);
    set(world, "debugTab", tab);
}

ResultPayload longText(qsizetype characters)
{
    QString text = u"A tale of a ferry\n\n"_s;
    while (text.size() < characters) {
        text += kSentence.repeated(5).trimmed() + u"\n\n"_s;
    }
    return TextPayload{text};
}

void attach(World &world, int count)
{
    QList<InputAttachment> attachments;
    for (int number = 0; number < count; ++number) {
        InputAttachment attachment;
        attachment.id = QUuid::createUuid();
        attachment.kind = number % 2 == 0 ? InputAttachmentKind::Pdf : InputAttachmentKind::Image;
        attachment.filename = number % 3 == 0
            ? u"Minutes of the meeting of the friends of the harbour ferry %1.pdf"_s.arg(number)
            : u"page %1.png"_s.arg(number);
        attachments.append(attachment);
    }
    world.viewModel->setQuickInput(kSentence);
    world.viewModel->setQuickAttachments(attachments);
    world.viewModel->setInputAttachmentNotice(u"Unsupported file type: .docx (Notes.docx)"_s);
}

} // namespace

Scenes resultScenes()
{
    using Tab = ResultPresenter;
    return {
        {u"result-short"_s,
            [](World &world) { show(world, TextPayload{u"The ferry is late."_s}); }},
        {u"result-long"_s, [](World &world) { show(world, longText(4'000)); }},
        {u"result-expanded"_s,
            [](World &world) {
                show(world, longText(900));
                world.viewModel->setRefinePrompt(u"Shorter, and kinder to the crew"_s);
                set(world, "isExpanded", true);
            }},
        {u"result-megabytes"_s,
            [](World &world) {
                show(world, longText(5'000'000));
                set(world, "isExpanded", true);
            }},
        {u"result-hebrew"_s,
            [](World &world) {
                show(world,
                    TextPayload{u"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD\n"_s.repeated(3)
                        + kSentence});
            }},
        {u"result-selected"_s,
            [](World &world) {
                show(world, longText(600));
                world.window->findChild<QQuickItem *>(u"longText"_s)
                    ->forceActiveFocus(Qt::TabFocusReason);
                world.press(Qt::Key_A, Qt::ControlModifier);
            }},
        {u"result-request"_s, [](World &world) { showDetails(world, Tab::Request); }},
        {u"result-response"_s, [](World &world) { showDetails(world, Tab::Response); }},
        {u"result-info"_s, [](World &world) { showDetails(world, Tab::Info); }},
        {u"result-no-metadata"_s,
            [](World &world) {
                showDetails(world, Tab::Info);
                world.viewModel->setLatestRunDebugInfo(GenerationDebugInfo());
            }},
        {u"result-picture"_s, [](World &world) { showPicture(world, u"picture"_s); }},
        {u"result-broken-picture"_s, [](World &world) { showPicture(world, u"brokenPicture"_s); }},
        {u"result-pdf"_s,
            [](World &world) {
                show(world, PdfPayload{QUrl(u"file:///tmp/Velarc-One-Sentence-Summary.pdf"_s), {}});
            }},
        {u"result-pdf-long"_s,
            [](World &world) {
                const QString name =
                    u"A file of a name that is longer than the window "_s.repeated(5);
                show(world, PdfPayload{QUrl::fromLocalFile(u"/tmp/"_s + name + u".pdf"_s), {}});
            }},
        {u"result-share"_s,
            [](World &world) {
                show(world, PdfPayload{QUrl(u"file:///tmp/Velarc-Summary.pdf"_s), {}});
                world.click(u"Share"_s);
            }},
        {u"result-save"_s,
            [](World &world) {
                show(world, TextPayload{kSentence});
                world.screens->share()->saveAs();
                world.settle();
                world.screens->share()->setSavePath(u"/"_s);
                world.screens->share()->save();
                static_cast<void>(
                    waitUntil([&] { return !world.screens->share()->saveProblem().isEmpty(); }));
            }},
        {u"error"_s,
            [](World &world) {
                fail(world, u"Request failed for provider OpenAI."_s,
                    kSentence.repeated(7).first(400));
            }},
        {u"error-technical"_s,
            [](World &world) {
                fail(world, u"Request failed for provider OpenAI."_s,
                    kSentence.repeated(7).first(400));
                set(world, "isTechnicalExpanded", true);
            }},
        {u"error-long"_s,
            [](World &world) { fail(world, kSentence.repeated(7).first(400), QString()); }},
        {u"error-connect"_s,
            [](World &world) {
                world.viewModel->setSuggestedConnectionProvider(AIProvider::Anthropic);
                world.viewModel->setStatusNote(u"Connect Anthropic to run this action."_s);
                fail(world, u"Anthropic is not connected."_s, u"Add your API key to continue."_s);
                set(world, "isTechnicalExpanded", true);
            }},
        {u"input-attachments"_s, [](World &world) { attach(world, 10); }},
        {u"input-megabytes"_s,
            [](World &world) { world.viewModel->setQuickInput(kSentence.repeated(80'000)); }},
        {u"processing-long"_s,
            [](World &world) {
                AIAction action = world.viewModel->actions().constFirst();
                action.id = QUuid::createUuid();
                action.name =
                    u"An action whose name is much longer than any row of it is "_s.repeated(3);
                world.viewModel->library().importActions({action});
                world.viewModel->library().selectAction(action.id);
                world.viewModel->setEngineState(
                    EngineProcessing{u"Apple unavailable, trying OpenAI image generation"_s});
                world.viewModel->setHomePhase(HomePhase::Processing);
            }},
    };
}

} // namespace velarc
