#include "picture_world.h"

namespace velarc {

namespace {

using World = PictureWorld;

const QString kLongName = u"An action whose name is much longer than any row of it is "_s;

AIAction actionOfALongName(World &world)
{
    AIAction action = world.viewModel->actions().constFirst();
    action.id = QUuid::createUuid();
    action.name = kLongName.repeated(3);
    action.isPinned = true;
    return action;
}

void selectActionOfALongName(World &world)
{
    const AIAction action = actionOfALongName(world);
    world.viewModel->library().importActions({action});
    world.viewModel->library().selectAction(action.id);
}

// The keyboard on a row of the sidebar.
void focusSidebar(World &world)
{
    world.itemCalled(u"New"_s)->forceActiveFocus(Qt::TabFocusReason);
    world.press(Qt::Key_Tab);
    world.press(Qt::Key_Tab);
    world.press(Qt::Key_Down);
}

} // namespace

Scenes homeScenes()
{
    return {
        {u"home-text"_s,
            [](World &world) {
                world.viewModel->setQuickInput(
                    u"The harbour ferry was late again, and the crew blamed the tide.\n\n"_s
                        .repeated(30));
            }},
        {u"home-hebrew"_s,
            [](World &world) {
                world.viewModel->setQuickInput(
                    u"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD\nplain text\n"_s.repeated(
                        3));
            }},
        {u"home-note"_s,
            [](World &world) {
                world.viewModel->setStatusNote(u"Create or select an action first."_s);
                world.viewModel->setClipboardToast(
                    ClipboardToast{QUuid::createUuid(), u"Copied to clipboard"_s});
            }},
        {u"home-note-long"_s,
            [](World &world) {
                world.viewModel->setStatusNote(
                    u"A note that is much longer than the line at the foot of the screen. "_s
                        .repeated(6));
            }},
        {u"home-drop"_s, [](World &world) { world.screens->canvas()->setIsDropTargeted(true); }},
        {u"home-banner"_s,
            [](World &world) {
                world.viewModel->setSuggestedConnectionProvider(AIProvider::Gemini);
            }},
        {u"home-long-name"_s, &selectActionOfALongName},
        {u"home-classic-long-name"_s,
            [](World &world) {
                world.viewModel->library().setNewRunExperienceEnabled(false);
                selectActionOfALongName(world);
            }},
        {u"home-no-action"_s, [](World &world) { world.viewModel->setActions({}); }},
        {u"home-sidebar-focus"_s, &focusSidebar},
    };
}

} // namespace velarc
