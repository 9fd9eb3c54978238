// The text and the files that an action runs on, and all ways to bring them there.

#include "ui_world.h"

#include "support/wait_until.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTemporaryDir>

namespace velarc {

namespace {

const QString kEditor = u"Type, paste, or drop a file — then hit Run"_s;

InputAttachment attachmentNamed(const QString &name, InputAttachmentKind kind)
{
    InputAttachment attachment;
    attachment.id = QUuid::createUuid();
    attachment.filename = name;
    attachment.kind = kind;
    return attachment;
}

class InputCardTest : public UiWorld
{
protected:
    QTemporaryDir folder;
    QMimeData dragged;

    InputCardTest()
    {
        openWindow();
        openAI->answer.gate.close(); // what is dropped runs, and its answer is not asked for here
    }

    ~InputCardTest() override
    {
        viewModel->cancelRun();
        letRunGoOn();
    }

    QString madeFile(const QString &name)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    [[nodiscard]] QQuickItem &editor()
    {
        QQuickItem *item = itemCalled(kEditor);
        if (item == nullptr) {
            throw std::runtime_error("there is no editor");
        }
        return *item;
    }

    void enterText(const QString &text)
    {
        editor().forceActiveFocus();
        type(text);
    }

    // As a paste does, all at once.
    void insert(const QString &text)
    {
        const int at = editor().property("length").toInt();
        QMetaObject::invokeMethod(&editor(), "insert", Q_ARG(int, at), Q_ARG(QString, text));
        settle();
    }

    // The change handler runs on the next turn, and the file system is asked behind it.
    void letChangeBeSeen()
    {
        for (int hop = 0; hop < 2; ++hop) {
            turnEventLoop();
            ASSERT_TRUE(waitUntil([this] { return scope->running() == 0; }));
        }
        settle();
    }

    void hover(const QPointF &at = {700, 400})
    {
        QDragEnterEvent enter(
            at.toPoint(), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &enter);
        QDragMoveEvent move(at.toPoint(), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &move);
        settle();
    }

    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(window.get(), &event);
        settle();
    }

    // Whether the window took it.
    bool drop(const QPointF &at = {700, 400})
    {
        hover(at);
        QDropEvent event(at, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &event);
        const bool isTaken = event.isAccepted();
        settle();
        return isTaken;
    }

    [[nodiscard]] bool glows()
    {
        QQuickItem *card = window->findChild<QQuickItem *>(u"input-card"_s);
        return card != nullptr && card->property("isDropTargeted").toBool();
    }

    [[nodiscard]] QColor editorStroke()
    {
        QQuickItem *item = &editor();
        while (!item->property("stroke").isValid()) {
            item = item->parentItem();
        }
        return item->property("stroke").value<QColor>();
    }
};

TEST_F(InputCardTest, whatIsTypedIsTheInput)
{
    EXPECT_TRUE(shows(u"Input"_s));
    enterText(u"hello"_s);
    EXPECT_EQ(viewModel->quickInput(), u"hello"_s);
}

TEST_F(InputCardTest, inputThatComesFromElsewhereIsShown)
{
    viewModel->setQuickInput(u"from elsewhere"_s);
    settle();
    EXPECT_EQ(editor().property("text"), u"from elsewhere"_s);
}

TEST_F(InputCardTest, placeholderStandsWhileThereIsNoTextAndTakesNoPress)
{
    EXPECT_TRUE(editor().property("isEmpty").toBool());
    click(kEditor);
    EXPECT_EQ(focusedName(), kEditor);
    viewModel->setQuickInput(u" "_s);
    settle();
    EXPECT_FALSE(editor().property("isEmpty").toBool());
}

TEST_F(InputCardTest, rightToLeftTextBeginsAtTheRight)
{
    enterText(u"\u05E9\u05DC\u05D5\u05DD"_s);
    const qreal caret = editor().property("cursorRectangle").toRectF().x();
    EXPECT_GT(caret, editor().width() / 2);
    viewModel->setQuickInput(u"plain"_s);
    settle();
    EXPECT_LT(editor().property("cursorRectangle").toRectF().x(), editor().width() / 2);
}

TEST_F(InputCardTest, clearEmptiesTheCanvas)
{
    viewModel->setQuickInput(u"hello"_s);
    viewModel->setQuickAttachments({attachmentNamed(u"a.png"_s, InputAttachmentKind::Image)});
    viewModel->setInputAttachmentNotice(u"A notice."_s);
    settle();
    click(u"Clear"_s);
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_FALSE(shows(u"Attachments"_s));
    EXPECT_FALSE(shows(u"A notice."_s));
    EXPECT_EQ(editor().property("text"), QString());
}

TEST_F(InputCardTest, labelOfPasteTellsWhetherItRuns)
{
    viewModel->setHomeAutomationOptions({true, false});
    settle();
    EXPECT_TRUE(shows(u"Paste + Run"_s));
    EXPECT_FALSE(shows(u"Paste"_s));
    viewModel->setHomeAutomationOptions({false, false});
    settle();
    EXPECT_TRUE(shows(u"Paste"_s));
    EXPECT_FALSE(shows(u"Paste + Run"_s));
}

TEST_F(InputCardTest, pasteBringsTheClipboardToTheEditor)
{
    viewModel->setHomeAutomationOptions({false, false});
    settle();
    clipboard->payload.text = u"from the clipboard"_s;
    click(u"Paste"_s);
    letChangeBeSeen();
    EXPECT_EQ(editor().property("text"), u"from the clipboard"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(InputCardTest, eachAttachmentHasAChipWithItsSymbolThatRemovesIt)
{
    EXPECT_FALSE(shows(u"Attachments"_s));
    viewModel->setQuickAttachments({attachmentNamed(u"a.pdf"_s, InputAttachmentKind::Pdf),
        attachmentNamed(u"b.png"_s, InputAttachmentKind::Image)});
    settle();
    EXPECT_TRUE(shows(u"Attachments"_s));
    EXPECT_EQ(itemCalled(u"a.pdf"_s)->property("symbol"), u"doc.richtext"_s);
    EXPECT_EQ(itemCalled(u"b.png"_s)->property("symbol"), u"photo"_s);
    click(u"Remove a.pdf"_s);
    EXPECT_FALSE(shows(u"a.pdf"_s));
    ASSERT_EQ(viewModel->quickAttachments().size(), 1);
    EXPECT_EQ(viewModel->quickAttachments().first().filename, u"b.png"_s);
}

TEST_F(InputCardTest, noticeIsShownTrimmedAndABlankOneIsNot)
{
    viewModel->setInputAttachmentNotice(u" \n "_s);
    settle();
    EXPECT_EQ(screens->canvas()->notice(), QString());
    viewModel->setInputAttachmentNotice(u"\nUnsupported file type: .docx (a.docx) \n"_s);
    settle();
    EXPECT_TRUE(shows(u"Unsupported file type: .docx (a.docx)"_s));
}

TEST_F(InputCardTest, aPathPastedIntoTheEmptyEditorIsTakenAsAFile)
{
    const QString path = madeFile(u"a.pdf"_s);
    insert(path);
    letChangeBeSeen();
    EXPECT_EQ(viewModel->quickInput(), QString());
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), QList<QUrl>{QUrl::fromLocalFile(path)});
}

TEST_F(InputCardTest, eightCharactersTypedBehindOtherTextAreNoFileThoughTheyMakeAPath)
{
    const QString path = madeFile(u"12345678"_s);
    viewModel->setHomeAutomationOptions({false, false});
    viewModel->setQuickInput(path.chopped(8));
    letChangeBeSeen();
    insert(path.last(8));
    letChangeBeSeen();
    EXPECT_TRUE(files->drops.isEmpty());
    EXPECT_EQ(viewModel->quickInput(), path);
}

TEST_F(InputCardTest, twoPastedLinesOfWhichOneIsNoFileStayAsText)
{
    viewModel->setHomeAutomationOptions({false, false});
    const QString text = madeFile(u"a.pdf"_s) + u'\n' + folder.filePath(u"missing.pdf"_s);
    insert(text);
    letChangeBeSeen();
    EXPECT_TRUE(files->drops.isEmpty());
    EXPECT_EQ(viewModel->quickInput(), text);
    EXPECT_EQ(editor().property("text"), text);
}

TEST_F(InputCardTest, quotesAroundAPastedPathWithSpacesAreRemoved)
{
    const QString path = madeFile(u"two words.pdf"_s);
    insert(u'"' + path + u'"');
    letChangeBeSeen();
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), QList<QUrl>{QUrl::fromLocalFile(path)});
}

TEST_F(InputCardTest, pastedPathOfAFolderStaysAsText)
{
    viewModel->setHomeAutomationOptions({false, false});
    insert(folder.path());
    letChangeBeSeen();
    EXPECT_TRUE(files->drops.isEmpty());
    EXPECT_EQ(viewModel->quickInput(), folder.path());
}

TEST_F(InputCardTest, aHoveringFileMakesTheCardGlow)
{
    const QColor before = editorStroke();
    dragged.setUrls({QUrl(u"file:///a.png"_s)});
    hover();
    EXPECT_TRUE(glows());
    EXPECT_EQ(editorStroke(), QColor(0x63, 0x66, 0xF1));
    leave();
    EXPECT_FALSE(glows());
    EXPECT_EQ(editorStroke(), before);
}

TEST_F(InputCardTest, filesThatAreDroppedAnywhereAreTakenOnceEach)
{
    const QUrl first(u"file:///tmp/a.png"_s);
    const QUrl second(u"file:///tmp/b.pdf"_s);
    dragged.setUrls({first, second, QUrl(u"file:///tmp/./a.png"_s)});
    EXPECT_TRUE(drop({700, 30})); // above the editor
    EXPECT_FALSE(glows());
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), (QList<QUrl>{first, second}));
}

TEST_F(InputCardTest, filesThatAreDroppedOnTheEditorAreTakenToo)
{
    dragged.setUrls({QUrl(u"file:///tmp/a.png"_s)});
    const QPointF middle = editor().mapToScene({editor().width() / 2, editor().height() / 2});
    EXPECT_TRUE(drop(middle));
    EXPECT_EQ(files->drops.size(), 1);
    EXPECT_EQ(viewModel->quickInput(), QString());
}

TEST_F(InputCardTest, anAddressOfAFileThatIsDroppedAsTextIsTakenAsTheFile)
{
    dragged.setText(u"file:///tmp/a%20b.png"_s);
    EXPECT_TRUE(drop());
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), QList<QUrl>{QUrl::fromLocalFile(u"/tmp/a b.png"_s)});
}

TEST_F(InputCardTest, whatIsNoFileChangesNothingWhenItIsDropped)
{
    viewModel->setQuickInput(u"typed"_s);
    dragged.setUrls({QUrl(u"https://example.org/a.png"_s)});
    EXPECT_TRUE(drop()) << "it is taken in all cases";
    EXPECT_TRUE(files->drops.isEmpty());
    EXPECT_EQ(viewModel->quickInput(), u"typed"_s);
}

TEST_F(InputCardTest, aDropOnAShownResultReturnsToTheInput)
{
    viewModel->setEngineState(EngineResult{TextPayload{u"done"_s}, {}});
    viewModel->setHomePhase(HomePhase::Output);
    settle();
    dragged.setUrls({QUrl(u"file:///tmp/a.docx"_s)}); // nothing that could run
    EXPECT_TRUE(drop());
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_TRUE(shows(u"Dropped files have no supported content."_s));
}

} // namespace

} // namespace velarc
