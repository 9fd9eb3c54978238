// The two sheets of the home screen: what happens by itself, and the input that an action waits
// for.

#include "ui_world.h"

#include "support/wait_until.h"

#include <QAccessible>

namespace velarc {

namespace {

class AutomationTest : public UiWorld
{
protected:
    AutomationTest()
    {
        openWindow();
        click(u"Automation"_s);
    }
};

TEST_F(AutomationTest, namesBothOptionsAndTellsWhatTheyDo)
{
    EXPECT_EQ(itemCalled(u"Auto-run on Paste"_s)->property("subtitle"),
        u"Run the selected action immediately after Paste."_s);
    EXPECT_EQ(itemCalled(u"Auto-copy Result"_s)->property("subtitle"),
        u"Copy the response to clipboard when a run finishes."_s);
}

TEST_F(AutomationTest, eachOptionIsTurnedOverAndSaved)
{
    ASSERT_EQ(viewModel->homeAutomationOptions(), (HomeAutomationOptions{true, false}));
    click(u"Auto-run on Paste"_s);
    click(u"Auto-copy Result"_s);
    EXPECT_EQ(viewModel->homeAutomationOptions(), (HomeAutomationOptions{false, true}));
    EXPECT_EQ(store->loadAutomationOptions(), (HomeAutomationOptions{false, true}));
    QAccessibleInterface *face =
        QAccessible::queryAccessibleInterface(itemCalled(u"Auto-copy Result"_s));
    EXPECT_TRUE(face->state().checked);
}

TEST_F(AutomationTest, doneClosesItAndSoDoesEscape)
{
    click(u"Done"_s);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Auto-copy Result"_s); }));
    click(u"Automation"_s);
    ASSERT_TRUE(shows(u"Auto-copy Result"_s));
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Auto-copy Result"_s); }));
}

TEST_F(AutomationTest, itIsAtLeast460Wide)
{
    QQuickItem *sheet = itemCalled(u"Auto-run on Paste"_s)->parentItem();
    EXPECT_GE(sheet->width(), 460);
}

class InputModalTest : public UiWorld
{
protected:
    InputModalTest()
    {
        openWindow();
        viewModel->setIsInputModalPresented(true);
        settle();
    }
};

TEST_F(InputModalTest, asksAndTakesTheFocus)
{
    EXPECT_TRUE(shows(u"Input Required"_s));
    EXPECT_TRUE(shows(u"Paste or type what you want to send."_s));
    EXPECT_TRUE(waitUntil([this] { return focusedName() == u"Input"_s; }));
    type(u"hello"_s);
    EXPECT_EQ(viewModel->inputModalText(), u"hello"_s);
}

TEST_F(InputModalTest, itsEditorIsAtLeast180High)
{
    EXPECT_TRUE(waitUntil([this] { return focusedName() == u"Input"_s; }));
    EXPECT_GE(window->activeFocusItem()->height(), 178); // within its border
}

TEST_F(InputModalTest, cancelClosesIt)
{
    click(u"Cancel"_s);
    EXPECT_FALSE(viewModel->isInputModalPresented());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Input Required"_s); }));
}

TEST_F(InputModalTest, runSubmitsAndCloses)
{
    viewModel->setInputModalText(u"hello"_s);
    settle();
    click(u"Run"_s, itemCalled(u"Input Required"_s)->window()->contentItem());
    EXPECT_FALSE(viewModel->isInputModalPresented());
}

TEST_F(InputModalTest, itsKeyIsThatOfRun)
{
    type(u"hello"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(viewModel->isInputModalPresented());
}

} // namespace

} // namespace velarc
