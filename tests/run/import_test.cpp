#include "actions/action_transfer.h"
#include "base/uuid.h"
#include "support/app_world.h"

namespace velarc {
namespace {

class ImportTest : public AppWorld
{
protected:
    ImportTest() { launch(); }

    ActionLibrary &library() { return viewModel->library(); }
};

TEST_F(ImportTest, replacesInPlaceAppendsWhatIsNewAndSavesBoth)
{
    AIAction git = actionNamed(u"Git Ideas"_s);
    const qsizetype place = viewModel->actions().indexOf(git);
    git.systemPrompt = u"Other words."_s;
    AIAction fresh = testAction(u"Fresh"_s);
    library().importActions({git, fresh});
    EXPECT_EQ(viewModel->actions().at(place), git);
    EXPECT_EQ(viewModel->actions().last(), fresh);
    EXPECT_EQ(viewModel->actions().size(), 23);
    EXPECT_EQ(store->loadActions(), viewModel->actions());
}

TEST_F(ImportTest, selectionIsKept)
{
    const QUuid git = actionNamed(u"Git Ideas"_s).id;
    library().selectAction(git);
    library().importActions({testAction(u"Fresh"_s)});
    EXPECT_EQ(viewModel->selectedActionID(), git);
}

TEST_F(ImportTest, importIntoAnEmptyLibrarySelectsItsFirstAction)
{
    viewModel->setActions({});
    viewModel->setSelectedActionID(std::nullopt);
    const AIAction fresh = testAction(u"Fresh"_s);
    library().importActions({fresh});
    EXPECT_EQ(viewModel->selectedActionID(), fresh.id);
    EXPECT_EQ(store->loadHomeLayout().selectedActionID, fresh.id);
}

} // namespace
} // namespace velarc
