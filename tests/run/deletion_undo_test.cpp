#include "support/app_world.h"

namespace velarc {
namespace {

class DeletionUndoTest : public AppWorld
{
protected:
    DeletionUndoTest() { launch(); }
    ~DeletionUndoTest() override { scope->finish(); }

    ActionLibrary &library() { return viewModel->library(); }

    [[nodiscard]] QString notice() const
    {
        return viewModel->deletionNotice() ? viewModel->deletionNotice()->name : QString();
    }
};

TEST_F(DeletionUndoTest, undoRestoresThePlaceThePinTheRecentsAndTheSelection)
{
    for (const QString &name : {u"Git Ideas"_s, u"Tell Me a Joke"_s, u"One-Sentence Summary"_s}) {
        library().selectAction(actionNamed(name).id);
    }
    const AIAction joke = actionNamed(u"Tell Me a Joke"_s);
    library().selectAction(joke.id);
    library().togglePin(joke.id);
    const auto actions = viewModel->actions();
    const auto recents = viewModel->recentActionIDs();
    library().deleteAction(actionNamed(u"Tell Me a Joke"_s));
    EXPECT_EQ(notice(), u"Tell Me a Joke"_s);
    ASSERT_NE(viewModel->selectedActionID(), joke.id);
    library().undoDelete();
    EXPECT_EQ(viewModel->actions(), actions);
    EXPECT_EQ(viewModel->recentActionIDs(), recents);
    EXPECT_EQ(viewModel->selectedActionID(), joke.id);
    EXPECT_EQ(viewModel->deletionNotice(), std::nullopt);
    EXPECT_EQ(store->loadActions(), actions);
    EXPECT_EQ(store->loadHomeLayout().recentActionIDs, recents);
    EXPECT_EQ(store->loadHomeLayout().selectedActionID, joke.id);
}

TEST_F(DeletionUndoTest, noticeStandsForSixSecondsAndUndoingAfterwardsDoesNothing)
{
    library().deleteAction(actionNamed(u"Git Ideas"_s));
    clock->advance(5999ms);
    turnEventLoop();
    EXPECT_EQ(notice(), u"Git Ideas"_s);
    clock->advance(1ms);
    turnEventLoop();
    EXPECT_EQ(viewModel->deletionNotice(), std::nullopt);
    library().undoDelete();
    EXPECT_FALSE(hasActionNamed(u"Git Ideas"_s));
}

TEST_F(DeletionUndoTest, laterDeletionIsTheOneThatIsUndoneAndItsNoticeStandsItsFullTime)
{
    library().deleteAction(actionNamed(u"Git Ideas"_s));
    clock->advance(4s);
    turnEventLoop();
    library().deleteAction(actionNamed(u"Tell Me a Joke"_s));
    clock->advance(4s);
    turnEventLoop();
    EXPECT_EQ(notice(), u"Tell Me a Joke"_s);
    library().undoDelete();
    library().undoDelete();
    EXPECT_TRUE(hasActionNamed(u"Tell Me a Joke"_s));
    EXPECT_FALSE(hasActionNamed(u"Git Ideas"_s));
}

TEST_F(DeletionUndoTest, whatWasDoneSinceTheDeletionStays)
{
    const AIAction git = actionNamed(u"Git Ideas"_s);
    library().selectAction(git.id);
    library().deleteAction(git);
    const AIAction joke = actionNamed(u"Tell Me a Joke"_s);
    library().duplicateAction(joke);
    library().selectAction(joke.id);
    library().undoDelete();
    EXPECT_EQ(viewModel->selectedActionID(), joke.id);
    EXPECT_TRUE(hasActionNamed(u"Tell Me a Joke Copy"_s));
    EXPECT_EQ(viewModel->recentActionIDs(), (QList<QUuid>{git.id, joke.id}));
}

TEST_F(DeletionUndoTest, recentsNeverGrowBeyondTheirLimit)
{
    const auto actions = viewModel->actions();
    for (qsizetype index = 0; index < 8; ++index) {
        library().selectAction(actions.at(index).id);
    }
    library().deleteAction(actions.at(0));
    library().selectAction(actions.at(9).id);
    library().undoDelete();
    EXPECT_EQ(viewModel->recentActionIDs().size(), 8);
    EXPECT_EQ(viewModel->recentActionIDs().first(), actions.at(9).id);
}

TEST_F(DeletionUndoTest, deletingAnActionThatIsGoneOffersNothing)
{
    const AIAction git = actionNamed(u"Git Ideas"_s);
    viewModel->setActions({actionNamed(u"Tell Me a Joke"_s)});
    library().deleteAction(git);
    EXPECT_EQ(viewModel->deletionNotice(), std::nullopt);
}

TEST_F(DeletionUndoTest, noticeOfAnEndedProgramTouchesNothing)
{
    library().deleteAction(actionNamed(u"Git Ideas"_s));
    viewModel.reset();
    clock->advance(6s);
    turnEventLoop();
    EXPECT_TRUE(scope->finish());
}

} // namespace
} // namespace velarc
