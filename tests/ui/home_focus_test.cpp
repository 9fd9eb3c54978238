// Who has the keyboard on the home screen.

#include "ui_world.h"

#include "support/wait_until.h"

#include <QElapsedTimer>

namespace velarc {

namespace {

const QString kEditor = u"Type, paste, or drop a file — then hit Run"_s;

class HomeFocusTest : public UiWorld
{
protected:
    HomeFocusTest() { openWindow(); }

    void setPhase(HomePhase phase)
    {
        viewModel->setHomePhase(phase);
        settle();
    }

    // All of the input phase: the sidebar knows the actions by the same names.
    [[nodiscard]] QQuickItem *inputView()
    {
        return itemCalled(u"Run"_s)->parentItem()->parentItem();
    }

    [[nodiscard]] bool editorHasFocus() { return focusedName() == kEditor; }
    [[nodiscard]] bool editorGetsFocus()
    {
        return waitUntil([this] { return editorHasFocus(); });
    }
};

TEST_F(HomeFocusTest, editorHasTheFocusAMomentAfterTheStart)
{
    EXPECT_TRUE(editorGetsFocus());
}

TEST_F(HomeFocusTest, editorLosesTheFocusAtOnceAndGetsItBackWithTheInput)
{
    ASSERT_TRUE(editorGetsFocus());
    setPhase(HomePhase::Processing);
    EXPECT_FALSE(editorHasFocus());
    QElapsedTimer passed;
    passed.start();
    setPhase(HomePhase::Input);
    EXPECT_TRUE(editorGetsFocus());
    EXPECT_GE(passed.elapsed(), 180);
}

TEST_F(HomeFocusTest, focusIsNotTakenFromASheetThatWasOpenedMeanwhile)
{
    ASSERT_TRUE(editorGetsFocus());
    setPhase(HomePhase::Processing);
    setPhase(HomePhase::Input);
    viewModel->setIsActionLibraryPresented(true);
    settle();
    EXPECT_FALSE(waitUntil([this] { return editorHasFocus(); }, 400ms));
    EXPECT_EQ(focusedName(), u"Search actions"_s);
}

TEST_F(HomeFocusTest, escapeInASheetGivesTheEditorItsFocusBack)
{
    ASSERT_TRUE(editorGetsFocus());
    for (const auto &[key, modifiers] :
        {std::pair{Qt::Key_K, Qt::ControlModifier}, std::pair{Qt::Key_N, Qt::ControlModifier}}) {
        press(key, modifiers);
        ASSERT_FALSE(editorHasFocus());
        press(Qt::Key_Escape);
        EXPECT_TRUE(editorGetsFocus()) << key;
    }
}

TEST_F(HomeFocusTest, escapeInTheLibraryThatAPressOpenedLeadsBackToTheEditor)
{
    ASSERT_TRUE(editorGetsFocus());
    click(u"All Actions"_s, inputView());
    ASSERT_TRUE(viewModel->isActionLibraryPresented());
    press(Qt::Key_Escape);
    EXPECT_TRUE(editorGetsFocus());
}

TEST_F(HomeFocusTest, anActionChosenInTheLibraryLeadsBackToTheEditor)
{
    ASSERT_TRUE(editorGetsFocus());
    press(Qt::Key_K, Qt::ControlModifier);
    type(u"joke"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(viewModel->library().selectedAction()->name, u"Tell Me a Joke"_s);
    EXPECT_TRUE(editorGetsFocus());
}

TEST_F(HomeFocusTest, aPressAnywhereOnTheCardIsMeantForTheEditor)
{
    ASSERT_TRUE(editorGetsFocus());
    itemCalled(u"Clear"_s)->forceActiveFocus(Qt::TabFocusReason);
    click(u"Input"_s);
    EXPECT_TRUE(editorHasFocus());
}

} // namespace

} // namespace velarc
