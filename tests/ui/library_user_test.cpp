// The library as somebody uses it, from a new action to an import, by the keyboard alone.

#include "ui_world.h"

#include "actions/action_json.h"
#include "support/wait_until.h"

#include <QFile>
#include <QTemporaryDir>

namespace velarc {

namespace {

class LibraryUserTest : public UiWorld
{
protected:
    QTemporaryDir folder;

    LibraryUserTest()
    {
        fileChooser = std::make_shared<ScriptedFileChooser>();
        fileChooser->choice = {FileChoice::Outcome::Chosen, folder.filePath(u"actions.json"_s)};
    }

    void openLibrary()
    {
        viewModel->library().openActionLibrary();
        settle();
    }

    void openEditor()
    {
        viewModel->library().newAction();
        settle();
    }

    // The menu of the only action that `query` finds, on its entry of that number.
    void chooseInMenu(const QString &query, int entry)
    {
        press(Qt::Key_A, Qt::ControlModifier);
        type(query);
        press(Qt::Key_Down);
        press(Qt::Key_Menu);
        for (int step = 0; step < entry; ++step) {
            press(Qt::Key_Down);
        }
        press(Qt::Key_Return);
        EXPECT_TRUE(waitUntil([this] { return !shows(u"Duplicate"_s); }));
    }

    // From the row that has the focus.
    void backToSearch()
    {
        while (viewModel->isActionLibraryPresented() && !searchHasFocus()) {
            press(Qt::Key_Up);
        }
    }

    [[nodiscard]] bool searchHasFocus()
    {
        QAccessibleInterface *face =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return face != nullptr && face->text(QAccessible::Name) == u"Search actions"_s;
    }

    void waitForStage(TransferPresenter::Stage stage)
    {
        EXPECT_TRUE(waitUntil([&] { return screens->transfer()->stage() == stage; }));
        settle();
    }
};

TEST_F(LibraryUserTest, makesRunsDuplicatesEditsPinsDeletesAndTakesItBack)
{
    openWindow();
    openEditor();
    type(u"Harbour Haiku"_s);
    press(Qt::Key_Return);
    ASSERT_TRUE(hasActionNamed(u"Harbour Haiku"_s));

    openLibrary();
    type(u"harbour"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(viewModel->library().selectedAction()->name, u"Harbour Haiku"_s);
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    viewModel->setQuickInput(u"Late ferry"_s);
    viewModel->runSelectedAction();
    letRunGoOn();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Output);

    openLibrary();
    chooseInMenu(u"harbour"_s, 2);
    EXPECT_TRUE(hasActionNamed(u"Harbour Haiku Copy"_s));
    backToSearch();
    chooseInMenu(u"haiku copy"_s, 1);
    ASSERT_TRUE(viewModel->isStudioPresented());
    press(Qt::Key_A, Qt::ControlModifier);
    type(u"Second Haiku"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(hasActionNamed(u"Second Haiku"_s));
    EXPECT_FALSE(hasActionNamed(u"Harbour Haiku Copy"_s));
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Action Studio"_s); }));
    press(Qt::Key_Tab); // the keyboard has somewhere to go on from
    EXPECT_NE(window->activeFocusItem(), window->contentItem());

    openLibrary();
    chooseInMenu(u"second"_s, 0);
    EXPECT_TRUE(actionNamed(u"Second Haiku"_s).isPinned);
    const auto before = viewModel->actions();
    backToSearch();
    chooseInMenu(u"second"_s, 3);
    EXPECT_FALSE(hasActionNamed(u"Second Haiku"_s));
    EXPECT_TRUE(shows(u"Deleted Second Haiku"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(viewModel->actions(), before);
    EXPECT_EQ(store->loadActions(), before);
}

TEST_F(LibraryUserTest, exportsDeletesAndImports)
{
    openWindow();
    openLibrary();
    const auto before = viewModel->actions();
    press(Qt::Key_Tab); // Import
    press(Qt::Key_Tab); // Export
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return !screens->transfer()->message().isEmpty(); }));
    settle();
    EXPECT_TRUE(shows(u"Exported 22 actions to \u201cactions.json\u201d."_s));
    viewModel->library().deleteAction(actionNamed(u"Git Ideas"_s));
    viewModel->library().deleteAction(actionNamed(u"Tell Me a Joke"_s));
    settle();
    click(u"Import"_s);
    waitForStage(TransferPresenter::Previewing);
    EXPECT_TRUE(shows(u"2 new, 20 unchanged"_s));
    press(Qt::Key_Return);
    EXPECT_TRUE(shows(u"Imported \u201cactions.json\u201d: 2 new, 20 unchanged."_s));
    EXPECT_EQ(viewModel->actions().size(), before.size());
    EXPECT_TRUE(hasActionNamed(u"Git Ideas"_s));
    EXPECT_TRUE(hasActionNamed(u"Tell Me a Joke"_s));
}

TEST_F(LibraryUserTest, tabWalksFromTheSearchThroughTheCommandsToTheRows)
{
    openWindow();
    openLibrary();
    QStringList names;
    for (int step = 0; step < 6; ++step) {
        QAccessibleInterface *face =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        names.append(face == nullptr ? u"?"_s : face->text(QAccessible::Name));
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(names,
        (QStringList{u"Search actions"_s, u"Import"_s, u"Export"_s, u"One-Sentence Summary"_s,
            u"Close"_s, u"Search actions"_s}))
        << names.join(u", "_s).toStdString();
}

} // namespace

} // namespace velarc
