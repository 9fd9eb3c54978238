// Makes a picture of a screen: velarc_screen_picture SCREEN light|dark WIDTHxHEIGHT FILE; or of
// all, light and dark: velarc_screen_picture --all WIDTHxHEIGHT FOLDER SUFFIX.
//
// The scale is the one that QT_SCALE_FACTOR names; TEXT_SCALE names how much larger text is wanted.
// Without arguments it lists the screens.

#include "picture_world.h"

#include "actions/action_json.h"
#include "support/wait_until.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTextStream>

namespace velarc {

namespace {

using World = PictureWorld;

// A line for each screen and each of its states.
Scenes sharedScenes()
{
    return {
        {u"home"_s, [](World &) {}},
        {u"home-classic"_s,
            [](World &world) { world.viewModel->library().setNewRunExperienceEnabled(false); }},
        {u"processing"_s,
            [](World &world) {
                world.openAI->answer.gate.close();
                world.viewModel->setQuickInput(u"The harbour ferry was late again."_s);
                world.viewModel->runSelectedAction();
                world.settle();
            }},
        {u"result"_s,
            [](World &world) {
                world.viewModel->setQuickInput(u"The harbour ferry was late again."_s);
                world.viewModel->runSelectedAction();
                world.letRunGoOn();
            }},
        {u"more"_s, [](World &world) { world.viewModel->setIsMoreSheetPresented(true); }},
        {u"studio"_s, [](World &world) { world.viewModel->library().newAction(); }},
        {u"studio-long"_s,
            [](World &world) {
                AIAction action = builtInActions().constFirst();
                action.name =
                    u"An action whose name is much longer than any field of it is "_s.repeated(3);
                action.icon = u"bolt"_s;
                action.provider = AIProvider::Gemini;
                action.systemPrompt =
                    u"A line of the prompt that is rather long. {User_Input}\n"_s.repeated(40);
                action.skills = {u"email-drafting"_s, u"a-tag-of-many-words-"_s.repeated(8)};
                world.viewModel->library().editAction(action);
            }},
        {u"studio-symbols"_s,
            [](World &world) {
                world.viewModel->library().newAction();
                world.settle();
                world.press(Qt::Key_Tab);
                world.press(Qt::Key_A, Qt::ControlModifier);
                world.type(u"cal"_s);
                world.press(Qt::Key_Down);
            }},
        {u"studio-end"_s,
            [](World &world) {
                world.viewModel->library().editAction(
                    world.actionNamed(u"Invoice Follow-Up Message"_s));
                world.settle();
                world.itemCalled(u"Destination"_s)->forceActiveFocus(Qt::TabFocusReason);
                world.settle();
                world.press(Qt::Key_Space);
            }},
        {u"library-search"_s,
            [](World &world) {
                world.viewModel->setIsActionLibraryPresented(true);
                world.settle();
                world.type(u"invoice"_s);
                world.press(Qt::Key_Down);
                world.press(Qt::Key_Menu);
            }},
        {u"library-none"_s,
            [](World &world) {
                world.viewModel->setIsActionLibraryPresented(true);
                world.settle();
                world.type(u"zebra"_s);
            }},
        {u"library-deleted"_s,
            [](World &world) {
                AIAction action = world.viewModel->actions().at(2);
                action.name =
                    u"An action whose name is much longer than any row of it is "_s.repeated(3);
                world.viewModel->library().importActions({action});
                world.viewModel->setIsActionLibraryPresented(true);
                world.viewModel->library().togglePin(action.id);
                world.viewModel->library().selectAction(action.id);
                world.viewModel->library().deleteAction(world.viewModel->actions().at(5));
                world.screens->transfer()->importDropped({});
            }},
        {u"library-preview"_s,
            [](World &world) {
                world.viewModel->setIsActionLibraryPresented(true);
                QFile file(QDir::tempPath() + u"/velarc-picture.json"_s);
                AIAction other = world.viewModel->actions().at(0);
                other.colorHex = u"DC2626"_s;
                AIAction fresh = world.viewModel->actions().at(1);
                fresh.id = QUuid::createUuid();
                if (file.open(QIODevice::WriteOnly)) {
                    file.write(
                        writeActions({other, fresh, world.viewModel->actions().at(3)}).chopped(1)
                        + ",{\"name\":\"Odd\",\"sortOrder\":true},7]");
                    file.close();
                }
                world.screens->transfer()->importDropped({QUrl::fromLocalFile(file.fileName())});
                static_cast<void>(waitUntil([&] {
                    return world.screens->transfer()->stage() == TransferPresenter::Previewing;
                }));
                file.remove();
            }},
        {u"library-path"_s,
            [](World &world) {
                world.viewModel->setIsActionLibraryPresented(true);
                world.screens->transfer()->exportAll();
            }},
        {u"usage-full"_s,
            [](World &world) {
                DailyUsageLedger ledger = world.viewModel->dailyUsageLedger();
                ledger.record(
                    AIProvider::OpenAI, u"gpt-5"_s, {1200, 350, 1550}, world.clock->now());
                ledger.record(AIProvider::Anthropic, u"claude-opus-4-1-20250805"_s,
                    {90000000, 41000, 90041000}, world.clock->now());
                world.viewModel->setDailyUsageLedger(ledger);
                world.viewModel->setIsUsagePresented(true);
            }},
        {u"input-modal"_s, [](World &world) { world.viewModel->setIsInputModalPresented(true); }},
        {u"library"_s, [](World &world) { world.viewModel->setIsActionLibraryPresented(true); }},
        {u"usage"_s, [](World &world) { world.viewModel->setIsUsagePresented(true); }},
        {u"automation"_s, [](World &world) { world.click(u"Automation"_s); }},
    };
}

const Scenes &scenes()
{
    static const Scenes kScenes = [] {
        Scenes all = sharedScenes();
        all.merge(engineScenes());
        all.merge(homeScenes());
        all.merge(resultScenes());
        return all;
    }();
    return kScenes;
}

} // namespace

} // namespace velarc

namespace velarc {

namespace {

int makePicture(const QString &scene, Look look, QSize size, const QString &file)
{
    const bool isMade = PictureWorld().make(scenes().at(scene), look, size).save(file);
    for (const QString &line : WarningLog::lines()) {
        QTextStream(stderr) << scene << ": " << line << '\n';
    }
    return isMade ? 0 : 1;
}

// Every scene, light and dark, as FOLDER/SCENE-LOOK-SUFFIX.png.
int makeAll(QSize size, const QString &folder, const QString &suffix)
{
    int status = 0;
    for (const auto &[scene, set] : scenes()) {
        const QString stem = folder + u'/' + scene;
        status |= makePicture(scene, Look::Light, size, stem + u"-light-"_s + suffix + u".png"_s);
        status |= makePicture(scene, Look::Dark, size, stem + u"-dark-"_s + suffix + u".png"_s);
    }
    return status;
}

} // namespace

} // namespace velarc

int main(int argc, char **argv)
{
    using namespace velarc;
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::testing::InitGoogleTest(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const bool wantsAll = arguments.value(1) == u"--all"_s;
    const QStringList extent = arguments.value(wantsAll ? 2 : 3).split(u'x');
    const bool isKnown = wantsAll || scenes().count(arguments.value(1)) == 1;
    if (arguments.size() != 5 || extent.size() != 2 || !isKnown) {
        for (const auto &[name, scene] : scenes()) {
            QTextStream(stdout) << name << '\n';
        }
        return 2;
    }
    const QSize size(extent.at(0).toInt(), extent.at(1).toInt());
    return wantsAll
        ? makeAll(size, arguments.at(3), arguments.at(4))
        : makePicture(arguments.at(1), arguments.at(2) == u"dark"_s ? Look::Dark : Look::Light,
            size, arguments.at(4));
}
