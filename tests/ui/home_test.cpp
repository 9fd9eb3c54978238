// The home screen around its input.

#include "ui_world.h"

#include "support/wait_until.h"
#include "ui/home_presenter.h"

#include <QAccessible>

namespace velarc {

namespace {

const QString kEditor = u"Type, paste, or drop a file — then hit Run"_s;

AIAction named(const QString &name, int sortOrder, bool isPinned = false)
{
    AIAction action;
    action.id = QUuid::createUuid();
    action.name = name;
    action.sortOrder = sortOrder;
    action.isPinned = isPinned;
    return action;
}

QStringList namesOf(const QList<AIAction> &actions)
{
    QStringList names;
    for (const AIAction &action : actions) {
        names.append(action.name);
    }
    return names;
}

TEST(StripActions, fivePinnedActionsShowFour)
{
    QList<AIAction> actions{named(u"Unpinned"_s, 0)};
    for (int number = 1; number <= 5; ++number) {
        actions.append(named(u"Pinned %1"_s.arg(number), number, true));
    }
    EXPECT_EQ(namesOf(stripActions(actions)),
        (QStringList{u"Pinned 1"_s, u"Pinned 2"_s, u"Pinned 3"_s, u"Pinned 4"_s}));
}

TEST(StripActions, oneOrTwoPinnedActionsStandAlone)
{
    EXPECT_EQ(namesOf(stripActions({named(u"Amber"_s, 0), named(u"Beech"_s, 1, true)})),
        QStringList(u"Beech"_s));
}

TEST(StripActions, withoutAPinnedActionTheFirstFourInDisplayOrderAreShown)
{
    QList<AIAction> actions;
    for (int number = 5; number > 0; --number) {
        actions.append(named(u"Action %1"_s.arg(number), number));
    }
    AIAction hidden = named(u"Hidden"_s, 0);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    actions.append(hidden);
    EXPECT_EQ(namesOf(stripActions(actions)),
        (QStringList{u"Action 1"_s, u"Action 2"_s, u"Action 3"_s, u"Action 4"_s}));
}

TEST(PillText, namesTheStateAndTheEngineUnlessThereIsNone)
{
    EXPECT_EQ(pillText(EngineReady{}, u"None"_s), u"Ready"_s);
    EXPECT_EQ(pillText(EngineReady{}, u"OpenAI"_s), u"Ready \u2022 OpenAI"_s);
    EXPECT_EQ(pillText(EngineProcessing{u"step"_s}, u"OpenAI"_s), u"Running \u2022 OpenAI"_s);
    EXPECT_EQ(pillText(EngineResult{TextPayload{}, {}}, u"None"_s), u"Result"_s);
    EXPECT_EQ(pillText(EngineError{{}, {}}, u"Gemini"_s), u"Issue \u2022 Gemini"_s);
}

class HomeTest : public UiWorld
{
protected:
    HomeTest() { openWindow(); }

    void setPhase(HomePhase phase)
    {
        viewModel->setHomePhase(phase);
        settle();
    }

    void useClassicArrangement()
    {
        viewModel->library().setNewRunExperienceEnabled(false);
        settle();
    }

    // All of the input phase: the sidebar knows the actions by the same names.
    [[nodiscard]] QQuickItem *inputView()
    {
        return itemCalled(u"Run"_s)->parentItem()->parentItem();
    }

    // Where the item of that name stands in the window.
    [[nodiscard]] QRectF place(const QString &name)
    {
        QQuickItem *item = itemCalled(name);
        if (item == nullptr) {
            ADD_FAILURE() << "nothing is called " << name.toStdString();
            return {};
        }
        return item->mapRectToScene(item->boundingRect());
    }

    // The whole well of the input's editor.
    [[nodiscard]] QRectF editorPlace()
    {
        QQuickItem *item = itemCalled(kEditor);
        while (item != nullptr && !item->property("minimumHeight").isValid()) {
            item = item->parentItem();
        }
        return item == nullptr ? QRectF() : item->mapRectToScene(item->boundingRect());
    }
};

TEST_F(HomeTest, topBarLeadsToTheLibraryTheEngineRoomAndMore)
{
    const qreal library = place(u"Actions"_s).x();
    EXPECT_TRUE(shows(u"Engine Room"_s));
    EXPECT_LT(library, place(u"Ready"_s).x());
    screens->home()->openActionLibrary();
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    EXPECT_TRUE(viewModel->homeHintState().hasSeenChangeActionHint);
    viewModel->setIsActionLibraryPresented(false);
    settle();
    click(u"Engine Room"_s);
    EXPECT_TRUE(viewModel->isEngineRoomPresented());
    viewModel->setIsEngineRoomPresented(false);
    settle();
    screens->home()->openMoreSheet();
    EXPECT_TRUE(viewModel->isMoreSheetPresented());
    EXPECT_TRUE(viewModel->homeHintState().hasSeenMoreMenuHint);
}

TEST_F(HomeTest, pillFollowsTheEngine)
{
    EXPECT_TRUE(shows(u"Ready"_s));
    const std::array states{std::pair{EngineState(EngineProcessing{u"step"_s}), u"Running"_s},
        std::pair{EngineState(EngineResult{TextPayload{u"x"_s}, {}}), u"Result"_s},
        std::pair{EngineState(EngineError{u"x"_s, {}}), u"Issue"_s}};
    const QList<QColor> dots{
        QColor(0xF5, 0x9E, 0x0B), QColor(0x10, 0xB9, 0x81), QColor(0xEF, 0x44, 0x44)};
    EXPECT_EQ(itemCalled(u"Ready"_s)->property("dot").value<QColor>(), QColor(0x63, 0x66, 0xF1));
    for (std::size_t at = 0; at < states.size(); ++at) {
        viewModel->setEngineState(states.at(at).first);
        settle();
        QQuickItem *pill = itemCalled(states.at(at).second);
        ASSERT_NE(pill, nullptr) << states.at(at).second.toStdString();
        EXPECT_EQ(pill->property("dot").value<QColor>(), dots.at(static_cast<int>(at)));
    }
    viewModel->setActiveProviderLabel(u"Gemini"_s);
    settle();
    EXPECT_TRUE(shows(u"Issue \u2022 Gemini"_s));
}

TEST_F(HomeTest, newArrangementShowsTheActionAndNoStrip)
{
    const AIAction action = *viewModel->library().selectedAction();
    EXPECT_TRUE(shows(u"Action"_s));
    QAccessibleInterface *row =
        QAccessible::queryAccessibleInterface(itemCalled(action.name, inputView()));
    EXPECT_EQ(row->text(QAccessible::Name), action.name);
    EXPECT_EQ(row->text(QAccessible::Description), viewModel->routingSummary(action));
    EXPECT_TRUE(shows(u"Input"_s));
    EXPECT_TRUE(shows(u"Run"_s));
    EXPECT_TRUE(shows(u"Automation"_s));
    EXPECT_LT(place(u"Action"_s).y(), place(u"Input"_s).y());
    EXPECT_LT(place(u"Input"_s).y(), place(u"Run"_s).y());
}

TEST_F(HomeTest, classicArrangementShowsTheStripAndNeitherActionNorBanner)
{
    viewModel->setSuggestedConnectionProvider(AIProvider::Gemini);
    settle();
    ASSERT_TRUE(shows(u"Connect Gemini to run this action."_s));
    useClassicArrangement();
    EXPECT_FALSE(shows(u"Action"_s));
    EXPECT_FALSE(shows(u"Connect Gemini to run this action."_s));
    EXPECT_LT(place(u"All Actions"_s).y(), place(u"Input"_s).y());
    EXPECT_LT(place(u"Input"_s).y(), place(u"Run"_s).y());
    viewModel->library().setNewRunExperienceEnabled(true);
    settle();
    EXPECT_TRUE(shows(u"Action"_s));
    EXPECT_TRUE(shows(u"Connect Gemini to run this action."_s));
}

TEST_F(HomeTest, chipOfTheStripSelectsItsActionAndShowsIt)
{
    const QList<AIAction> actions{named(u"Amber"_s, 1), named(u"Beech"_s, 2)};
    viewModel->setActions(actions);
    viewModel->library().selectAction(actions.first().id);
    useClassicArrangement();
    click(u"Beech"_s, inputView());
    EXPECT_EQ(viewModel->selectedActionID(), actions.at(1).id);
    QAccessibleInterface *chip =
        QAccessible::queryAccessibleInterface(itemCalled(u"Beech"_s, inputView()));
    EXPECT_TRUE(chip->state().selected || chip->state().checked);
}

TEST_F(HomeTest, actionRowAndAllActionsOpenTheLibrary)
{
    click(u"All Actions"_s, inputView());
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    viewModel->setIsActionLibraryPresented(false);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Search actions"_s); }));
    click(viewModel->library().selectedAction()->name, inputView());
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
}

TEST_F(HomeTest, withoutAnActionTheCardAsksForOneAndRunSaysSo)
{
    viewModel->setActions({});
    settle();
    EXPECT_TRUE(shows(u"Select an action"_s));
    EXPECT_TRUE(itemCalled(u"Run"_s)->isEnabled());
    click(u"Run"_s);
    EXPECT_TRUE(shows(u"Create or select an action first."_s));
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(HomeTest, bannerOffersTheEngineThatIsMissing)
{
    EXPECT_FALSE(shows(u"Connect Gemini"_s));
    viewModel->setSuggestedConnectionProvider(AIProvider::Gemini);
    settle();
    EXPECT_TRUE(shows(u"Connect Gemini to run this action."_s));
    click(u"Connect Gemini"_s);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::Gemini);
    viewModel->setProviderConnectSheetProvider(std::nullopt);
    viewModel->setSuggestedConnectionProvider(std::nullopt);
    settle();
    EXPECT_FALSE(shows(u"Connect Gemini to run this action."_s));
}

TEST_F(HomeTest, noteStandsAtTheFootInEveryPhase)
{
    for (const HomePhase phase : {HomePhase::Input, HomePhase::Processing, HomePhase::Output}) {
        viewModel->setStatusNote(u"A line of status."_s);
        setPhase(phase);
        ASSERT_TRUE(shows(u"A line of status."_s));
        EXPECT_GT(place(u"A line of status."_s).y(), 820 - 40);
        EXPECT_LE(place(u"A line of status."_s).bottom(), 820);
    }
    viewModel->setStatusNote(std::nullopt);
    settle();
    EXPECT_FALSE(shows(u"A line of status."_s));
}

TEST_F(HomeTest, aNoteMovesNothing)
{
    const qreal run = place(u"Run"_s).y();
    viewModel->setStatusNote(u"A line of status."_s);
    settle();
    EXPECT_EQ(place(u"Run"_s).y(), run);
}

TEST_F(HomeTest, toastFloatsOverTheCanvasWithItsMessage)
{
    viewModel->setClipboardToast(ClipboardToast{QUuid::createUuid(), u"Copied to clipboard"_s});
    settle();
    ASSERT_TRUE(shows(u"Copied to clipboard"_s));
    EXPECT_EQ(itemCalled(u"Copied to clipboard"_s)->property("symbol"), u"checkmark.circle.fill"_s);
    viewModel->setClipboardToast(std::nullopt);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Copied to clipboard"_s); }));
}

TEST_F(HomeTest, processingShowsTheStepTheActionAndCancel)
{
    viewModel->setEngineState(EngineProcessing{u"Selecting provider"_s});
    setPhase(HomePhase::Processing);
    EXPECT_TRUE(shows(u"Selecting provider"_s));
    EXPECT_TRUE(shows(u"Action: "_s + viewModel->library().selectedAction()->name));
    EXPECT_TRUE(shows(u"Running"_s));
    EXPECT_FALSE(shows(u"Run"_s));
    viewModel->setEngineState(EngineReady{});
    settle();
    EXPECT_TRUE(shows(u"Generating response"_s));
    viewModel->setActions({});
    settle();
    EXPECT_FALSE(shows(u"Action: "_s));
}

TEST_F(HomeTest, cancelStopsTheRunAndReturnsToTheInput)
{
    openAI->answer.gate.close();
    AIAction action = named(u"Amber"_s, 1);
    action.provider = AIProvider::OpenAI;
    keys->keys[AIProvider::OpenAI] = "sk-x";
    viewModel->setActions({action});
    viewModel->setQuickInput(u"hello"_s);
    click(u"Run"_s);
    ASSERT_EQ(viewModel->homePhase(), HomePhase::Processing);
    click(u"Cancel"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_EQ(viewModel->quickInput(), u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(HomeTest, escapeCancelsARun)
{
    openAI->answer.gate.close();
    viewModel->setQuickInput(u"hello"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(viewModel->homePhase(), HomePhase::Processing);
    press(Qt::Key_Escape);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    letRunGoOn();
}

TEST_F(HomeTest, backReturnsToTheInputAndRunAgainRuns)
{
    viewModel->setQuickInput(u"hello"_s);
    viewModel->setEngineState(EngineResult{TextPayload{u"done"_s}, {}});
    setPhase(HomePhase::Output);
    EXPECT_LT(place(u"Back"_s).x(), place(u"Run Again"_s).x());
    EXPECT_LT(place(u"Back"_s).y(), place(u"Result"_s).y());
    click(u"Run Again"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Processing);
    letRunGoOn();
    ASSERT_EQ(viewModel->homePhase(), HomePhase::Output);
    click(u"Back"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(HomeTest, editorTakesTheHeightThatTheWindowHas)
{
    const QRectF editor = editorPlace();
    EXPECT_GT(editor.height(), 400);
    // Run stands where the content ends, thirty pixels above the window's lower edge.
    EXPECT_NEAR(place(u"Run"_s).bottom(), 820 - 30, 1);
    window->resize(1200, 1000);
    settle();
    EXPECT_NEAR(editorPlace().height(), editor.height() + 180, 1);
    window->resize(900, 420);
    settle();
    EXPECT_EQ(editorPlace().height(), 210) << "the screen scrolls instead";
}

TEST_F(HomeTest, editorMakesRoomForAttachmentsAndTheirNotice)
{
    const qreal before = editorPlace().height();
    InputAttachment attachment;
    attachment.id = QUuid::createUuid();
    attachment.filename = u"minutes.pdf"_s;
    viewModel->setQuickAttachments({attachment});
    viewModel->setInputAttachmentNotice(u"Unsupported file type: .docx (Notes.docx)"_s);
    settle();
    EXPECT_LT(editorPlace().height(), before);
    EXPECT_NEAR(place(u"Run"_s).bottom(), 820 - 30, 1);
    useClassicArrangement();
    EXPECT_NEAR(place(u"Run"_s).bottom(), 820 - 30, 1);
}

TEST_F(HomeTest, contentKeepsItsInset)
{
    window->resize(900, 640);
    settle();
    const QRectF editor = editorPlace();
    const qreal sidebar = 220 + 1;
    EXPECT_EQ(editor.x() - 16, sidebar + 20);
    EXPECT_EQ(900 - editor.right() - 16, 20);
}

} // namespace

} // namespace velarc
