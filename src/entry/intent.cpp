#include "entry/intent.h"

#include "base/text.h"

#include <algorithm>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

IntentOutcome refused(QString dialog)
{
    return {IntentOutcome::Kind::Refused, std::move(dialog), std::nullopt};
}

bool needsComposeWindow(const AIAction &action)
{
    const auto kind = action.destination.asSystem();
    return kind == SystemDestinationKind::MailCompose
        || kind == SystemDestinationKind::MessagesCompose;
}

QString dialogFor(const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        return isBlank(text->text) ? u"Action completed."_s : text->text;
    }
    return std::holds_alternative<ImagePayload>(payload) ? u"Image generated."_s
                                                         : u"PDF generated."_s;
}

} // namespace

QCoro::Task<IntentOutcome> performIntent(
    QUuid actionID, QString input, MakeViewModel makeViewModel, std::stop_token stop)
{
    const QString text = trimmed(input).toString();
    if (text.isEmpty()) {
        co_return refused(u"Input is empty."_s);
    }
    const std::unique_ptr<AppViewModel> viewModel = makeViewModel();
    const QList<AIAction> &actions = viewModel->actions();
    const auto found = std::find_if(actions.begin(), actions.end(),
        [&](const AIAction &action) { return action.id == actionID; });
    if (found == actions.end()) {
        co_return refused(u"Action no longer exists."_s);
    }
    if (needsComposeWindow(*found)) {
        co_return refused(u"This action needs foreground compose UI in Mail or Messages. "
                          u"Open Velarc and run it there."_s);
    }
    ShortcutRun run = co_await viewModel->runForShortcutInDetail(*found, text, stop);
    QString dialog = dialogFor(run.payload);
    co_return IntentOutcome{IntentOutcome::Kind::Done, std::move(dialog), std::move(run)};
}

} // namespace velarc
