#include "run/run_fixture.h"
#include "support/app_world.h"

namespace velarc {
namespace {

class CanvasEventsTest : public AppWorld
{
protected:
    CanvasEventsTest()
    {
        launch();
        AIAction action = testAction(u"Plain"_s);
        action.provider = AIProvider::OpenAI;
        keys->keys[AIProvider::OpenAI] = "sk";
        viewModel->setActions({action});
        viewModel->setSelectedActionID(action.id);
    }

    CanvasEvents &canvas() { return viewModel->canvas(); }

    // How many runs there have been: each one selects its action.
    int runs = 0;

    void countRuns()
    {
        QObject::connect(viewModel.get(), &AppState::selectedActionIDChanged, viewModel.get(),
            [this] { ++runs; });
    }

    void copyElsewhere(const QString &text)
    {
        clipboard->payload.text = text;
        clipboardText->seen = text;
    }

    // As the editor does: each change is a write of the field.
    void typeInto(const QString &text)
    {
        viewModel->setQuickInput(text);
        turnEventLoop();
    }

    [[nodiscard]] bool isRunning() const { return viewModel->homePhase() == HomePhase::Processing; }
};

TEST_F(CanvasEventsTest, pasteMovesTheClipboardToTheCanvasAndStartsOneRun)
{
    countRuns();
    copyElsewhere(u" from elsewhere \n"_s);
    canvas().pasteFromClipboard();
    letRunGoOn();
    EXPECT_EQ(viewModel->quickInput(), u"from elsewhere"_s);
    EXPECT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(runs, 1);
}

TEST_F(CanvasEventsTest, pasteOfAnEmptyClipboardSaysSoAndLeavesTheCanvas)
{
    viewModel->setQuickInput(u"typed"_s);
    canvas().pasteFromClipboard();
    turnEventLoop();
    EXPECT_EQ(note(), u"Clipboard is empty."_s);
    EXPECT_EQ(viewModel->quickInput(), u"typed"_s);
}

TEST_F(CanvasEventsTest, pasteWithoutAnythingUsableEmptiesTheCanvasAndSaysSo)
{
    viewModel->setQuickInput(u"typed"_s);
    clipboard->payload.fileURLs = {QUrl(u"file:///a.docx"_s)};
    clipboard->intake.notices = {u"Unsupported file type: .docx (a.docx)"_s};
    canvas().pasteFromClipboard();
    turnEventLoop();
    EXPECT_EQ(note(), u"Clipboard has no supported content."_s);
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_EQ(viewModel->inputAttachmentNotice(), u"Unsupported file type: .docx (a.docx)"_s);
}

TEST_F(CanvasEventsTest, pasteLeavesAShownResultEvenWhereItRunsNothing)
{
    viewModel->setHomeAutomationOptions({false, false});
    viewModel->setHomePhase(HomePhase::Output);
    copyElsewhere(u"text"_s);
    canvas().pasteFromClipboard();
    turnEventLoop();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_EQ(viewModel->quickInput(), u"text"_s);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
}

TEST_F(CanvasEventsTest, pasteClearsTheNoticeOfAnEarlierOne)
{
    viewModel->setInputAttachmentNotice(u"old"_s);
    copyElsewhere(u"text"_s);
    canvas().pasteFromClipboard();
    turnEventLoop();
    EXPECT_EQ(viewModel->inputAttachmentNotice(), std::nullopt);
}

struct ChangeRow
{
    const char16_t *clipboard;
    const char16_t *before;
    const char16_t *after;
    bool fires;
};

class ChangeTest
    : public CanvasEventsTest
    , public ::testing::WithParamInterface<ChangeRow>
{
};

TEST_P(ChangeTest, tellsAPasteFromTyping)
{
    viewModel->setHomeAutomationOptions({false, false});
    typeInto(QString::fromUtf16(GetParam().before));
    viewModel->setHomeAutomationOptions({true, false});
    copyElsewhere(QString::fromUtf16(GetParam().clipboard));
    typeInto(QString::fromUtf16(GetParam().after));
    EXPECT_EQ(isRunning(), GetParam().fires);
}

INSTANTIATE_TEST_SUITE_P(EveryRule, ChangeTest,
    ::testing::Values(
        // The whole text is the clipboard's, trimmed.
        ChangeRow{u"hello", u"", u"hello", true}, ChangeRow{u" hello ", u"", u"hello\n", true},
        // Typed letter by letter until it equals the clipboard.
        ChangeRow{u"hello", u"hell", u"hello", true},
        ChangeRow{u"hello world", u"hell", u"hello", false},
        // In the middle of other text: as many characters as the clipboard has, 12 at most.
        ChangeRow{u"clip", u"a ", u"a clip", true},
        ChangeRow{u"a long clipboard text", u"x ", u"x a long clipboard text", true},
        ChangeRow{u"a long clipboard text", u"x a long cl", u"x a long clipboard text", true},
        ChangeRow{u"a long clipboard text", u"x a long cli", u"x a long clipboard text", false},
        ChangeRow{u"clip", u"a cli", u"a clip", false}, ChangeRow{u"b", u"a", u"a b", true},
        ChangeRow{u"b", u"a ", u"a b", false},
        // Nothing but white space changes, or nothing at all.
        ChangeRow{u"a", u"a", u" a ", false}, ChangeRow{u" \n", u"", u"typed at once text", false},
        ChangeRow{u"clip", u"", u"  ", false},
        // Case counts.
        ChangeRow{u"Clip text here", u"a ", u"a clip text here", false},
        // Twelve perceived characters, though more units.
        ChangeRow{u"\U0001F468\u200D\U0001F469\u200D\U0001F467", u"a",
            u"a\U0001F468\u200D\U0001F469\u200D\U0001F467", false}));

TEST_F(CanvasEventsTest, changesOfOneTurnAreLookedAtTogether)
{
    copyElsewhere(u"hello"_s);
    viewModel->setQuickInput(u"hello"_s);
    viewModel->setQuickInput(u"hello, but changed at once"_s);
    viewModel->setQuickInput(QString());
    turnEventLoop();
    EXPECT_FALSE(isRunning());
}

TEST_F(CanvasEventsTest, switchedOffNothingFires)
{
    viewModel->setHomeAutomationOptions({false, false});
    copyElsewhere(u"hello"_s);
    typeInto(u"hello"_s);
    EXPECT_FALSE(isRunning());
}

TEST_F(CanvasEventsTest, sameTextPastedTwiceFiresOnceUntilTheCanvasIsCleared)
{
    countRuns();
    copyElsewhere(u"hello"_s);
    typeInto(u"hello"_s);
    letRunGoOn();
    typeInto(QString());
    typeInto(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(runs, 1);
    canvas().clearQuickInput();
    turnEventLoop();
    typeInto(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(runs, 2);
}

TEST_F(CanvasEventsTest, runOnABlankCanvasIsTakenForAPasteAndTheUserSeesOneResult)
{
    countRuns();
    copyElsewhere(u"from the clipboard"_s);
    viewModel->runSelectedAction();
    letRunGoOn();
    letRunGoOn();
    EXPECT_EQ(runs, 2) << "the first one ends as stale in its first pause";
    EXPECT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Output);
    EXPECT_EQ(scope->running(), 0U);
}

TEST_F(CanvasEventsTest, dropRunsAlwaysOnTheFilesAlone)
{
    viewModel->setHomeAutomationOptions({false, false});
    typeInto(u"typed"_s);
    files->intake.attachments = {imageNamed(u"a.png"_s)};
    files->intake.notices = {u"Could not read PNG file: b.png"_s};
    canvas().handleDroppedFiles({QUrl(u"file:///a.png"_s), QUrl(u"file:///b.png"_s)});
    EXPECT_TRUE(files->drops.isEmpty()) << "the first step is only posted";
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(openAI->textRequests.first().attachments, files->intake.attachments);
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_EQ(viewModel->inputAttachmentNotice(), u"Could not read PNG file: b.png"_s);
}

TEST_F(CanvasEventsTest, dropOfNothingUsableEmptiesTheCanvasAndSaysSo)
{
    typeInto(u"typed"_s);
    viewModel->setHomePhase(HomePhase::Output);
    canvas().handleDroppedFiles({QUrl(u"file:///a.docx"_s)});
    turnEventLoop();
    EXPECT_EQ(note(), u"Dropped files have no supported content."_s);
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(CanvasEventsTest, dropWithoutAnActionLeavesTheResultAndAsksForOne)
{
    viewModel->setActions({});
    viewModel->setHomePhase(HomePhase::Output);
    files->intake.attachments = {imageNamed(u"a.png"_s)};
    canvas().handleDroppedFiles({QUrl(u"file:///a.png"_s)});
    turnEventLoop();
    EXPECT_EQ(note(), u"Create or select an action first."_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_EQ(viewModel->quickAttachments().size(), 1);
}

TEST_F(CanvasEventsTest, dropOfNothingDoesNothing)
{
    typeInto(u"typed"_s);
    canvas().handleDroppedFiles({});
    turnEventLoop();
    EXPECT_TRUE(files->drops.isEmpty());
    EXPECT_EQ(viewModel->quickInput(), u"typed"_s);
}

TEST_F(CanvasEventsTest, dropForgetsTheLastPaste)
{
    countRuns();
    copyElsewhere(u"hello"_s);
    typeInto(u"hello"_s);
    letRunGoOn();
    canvas().handleDroppedFiles({QUrl(u"file:///a.docx"_s)});
    turnEventLoop();
    typeInto(u"hello"_s);
    letRunGoOn();
    EXPECT_EQ(runs, 2);
}

TEST_F(CanvasEventsTest, clearingEmptiesTheWholeCanvas)
{
    viewModel->setQuickInput(u"typed"_s);
    viewModel->setQuickAttachments({imageNamed(u"a.png"_s)});
    viewModel->setInputAttachmentNotice(u"notice"_s);
    canvas().clearQuickInput();
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_TRUE(viewModel->quickAttachments().isEmpty());
    EXPECT_EQ(viewModel->inputAttachmentNotice(), std::nullopt);
}

TEST_F(CanvasEventsTest, noticeGoesWithTheLastAttachment)
{
    const InputAttachment one = imageNamed(u"a.png"_s);
    const InputAttachment two = imageNamed(u"b.png"_s);
    viewModel->setQuickAttachments({one, two});
    viewModel->setInputAttachmentNotice(u"notice"_s);
    canvas().removeAttachment(one.id);
    EXPECT_EQ(viewModel->quickAttachments(), QList<InputAttachment>{two});
    EXPECT_EQ(viewModel->inputAttachmentNotice(), u"notice"_s);
    canvas().removeAttachment(two.id);
    EXPECT_EQ(viewModel->inputAttachmentNotice(), std::nullopt);
}

TEST_F(CanvasEventsTest, inputSheetRunsTheWaitingActionOnItsTrimmedText)
{
    viewModel->setHomeAutomationOptions({false, false});
    canvas().holdForInput(viewModel->actions().first());
    viewModel->setIsInputModalPresented(true);
    viewModel->setInputModalText(u"  "_s);
    canvas().submitInputModal();
    EXPECT_TRUE(viewModel->isInputModalPresented()) << "blank text keeps the sheet";
    viewModel->setInputModalText(u" text "_s);
    canvas().submitInputModal();
    EXPECT_FALSE(viewModel->isInputModalPresented());
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.first().prompt, u"text"_s);
}

TEST_F(CanvasEventsTest, inputSheetWithoutAnActionJustCloses)
{
    viewModel->setIsInputModalPresented(true);
    viewModel->setInputModalText(u"text"_s);
    canvas().submitInputModal();
    EXPECT_FALSE(viewModel->isInputModalPresented());
    canvas().holdForInput(viewModel->actions().first());
    canvas().dismissInputModal();
    canvas().submitInputModal();
    letRunGoOn();
    EXPECT_TRUE(openAI->textRequests.isEmpty());
}

TEST_F(CanvasEventsTest, stateObjectMayGoWhileTheClipboardOrFilesAreRead)
{
    clipboard->payload.text = u"text"_s;
    clipboard->gate.close();
    files->gate.close();
    canvas().pasteFromClipboard();
    canvas().handleDroppedFiles({QUrl(u"file:///a.png"_s)});
    turnEventLoop();
    viewModel.reset();
    clipboard->gate.open();
    files->gate.open();
    turnEventLoop();
    EXPECT_EQ(scope->running(), 0U);
}

} // namespace
} // namespace velarc
