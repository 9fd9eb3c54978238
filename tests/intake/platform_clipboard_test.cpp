#include "picture_samples.h"
#include "scripted_documents.h"
#include "scripted_selection_owner.h"

#include "base/errors.h"
#include "intake/platform_clipboard.h"
#include "support/longest_gap.h"
#include "support/outcome.h"
#include "support/wait_until.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// How often the clipboard said that it changed.
struct Changes
{
    explicit Changes(QClipboard *clipboard)
    {
        QObject::connect(clipboard, &QClipboard::dataChanged, &m_connection, [this] { ++count; });
    }
    int count = 0;

private:
    QObject m_connection;
};

class PlatformClipboardTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QClipboard *system = QGuiApplication::clipboard();
    std::shared_ptr<TaskScope> scope = std::make_shared<TaskScope>();
    std::unique_ptr<PlatformClipboard> clipboard = make({});
    std::unique_ptr<QProcess> other; // the program that copies

    // What earlier tests did has come to Qt by now.
    PlatformClipboardTest() { QGuiApplication::sync(); }

    ~PlatformClipboardTest() override
    {
        end(other);
        clipboard.reset();
        EXPECT_TRUE(scope->finish());
        system->clear();
    }

    [[nodiscard]] std::unique_ptr<PlatformClipboard> make(SelectionBounds bounds) const
    {
        auto reader = std::make_shared<const AttachmentReader>(
            std::make_shared<ScriptedPdfTexts>(), std::make_shared<ScriptedDrawings>());
        return std::make_unique<PlatformClipboard>(system, std::move(reader), scope, bounds);
    }

    [[nodiscard]] QString file(const QString &name, const QByteArray &bytes) const
    {
        QFile made(folder.filePath(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(bytes);
        return made.fileName();
    }

    static void end(std::unique_ptr<QProcess> &process)
    {
        if (process) {
            process->kill(); // also one that is stopped
            process->waitForFinished();
            process.reset();
        }
    }

    // Has another program copy, and waits until the clipboard is its own.
    void startOther(const QString &program, const QStringList &arguments)
    {
        const auto before = clipboardOwner();
        auto started = std::make_unique<QProcess>();
        started->start(program, arguments);
        ASSERT_TRUE(started->waitForStarted());
        ASSERT_TRUE(waitUntil([&] {
            const auto now = clipboardOwner();
            return now != 0 && now != before && !system->ownsClipboard();
        }));
        QGuiApplication::sync(); // Qt heard of it, too
        std::swap(other, started);
        end(started); // who owns nothing any more
    }

    void copyWithXclip(const QString &form, const QByteArray &bytes)
    {
        startOther(u"xclip"_s,
            {u"-quiet"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, form, u"-i"_s,
                file(u"copied"_s, bytes)});
    }

    void copyForms(const QList<std::pair<QString, QByteArray>> &forms)
    {
        QStringList arguments;
        for (const auto &[name, bytes] : forms) {
            const QString path = file(u"form"_s + QString::number(arguments.size()), bytes);
            arguments.append(name + u'=' + path);
        }
        startOther(
            QCoreApplication::applicationDirPath() + u"/velarc_clipboard_owner"_s, arguments);
    }

    void hangOther() const
    {
        const auto process = static_cast<pid_t>(other->processId());
        if (process > 0) { // else it would be this test itself
            ::kill(process, SIGSTOP);
        } else {
            ADD_FAILURE() << "the other program is gone";
        }
    }

    // Reads that were begun for the cached text come to their end.
    void turnUntilCached() const
    {
        EXPECT_TRUE(waitUntil([this] { return scope->running() == 0; }));
    }

    [[nodiscard]] bool comesToCache(const QString &text) const
    {
        return waitUntil([&] { return clipboard->cachedText() == text; });
    }

    [[nodiscard]] ClipboardPayload read() const { return outcomeOf(clipboard->read({})); }

    // What another program gets when it pastes.
    [[nodiscard]] static QByteArray pastedByXclip(const QString &form)
    {
        QProcess xclip;
        xclip.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, form});
        EXPECT_TRUE(waitUntil([&] { return xclip.state() == QProcess::NotRunning; }));
        return xclip.readAllStandardOutput();
    }
};

TEST_F(PlatformClipboardTest, clipboardWithoutAnOwnerIsEmpty)
{
    EXPECT_FALSE(read().hasContent());
    EXPECT_EQ(outcomeOf(clipboard->text({})), QString());
    EXPECT_EQ(clipboard->cachedText(), QString());
}

TEST_F(PlatformClipboardTest, textOfAnotherProgramIsRead)
{
    copyWithXclip(u"UTF8_STRING"_s,
        u"two lines\n\U0001f600 \u4e2d\u6587 \u0633\u0644\u0627\u0645"_s.toUtf8());
    const auto payload = read();
    EXPECT_EQ(payload.text, u"two lines\n\U0001f600 \u4e2d\u6587 \u0633\u0644\u0627\u0645"_s);
    EXPECT_FALSE(payload.imagePNGData);
    EXPECT_FALSE(payload.pdfData);
    EXPECT_THAT(payload.fileURLs, IsEmpty());
    EXPECT_EQ(outcomeOf(clipboard->text({})), payload.text);
}

TEST_F(PlatformClipboardTest, pngOfAnotherProgramIsReadByteForByte)
{
    copyWithXclip(u"image/png"_s, pictureAs("png"));
    EXPECT_EQ(read().imagePNGData, pictureAs("png"));
    EXPECT_EQ(read().text, QString());
}

TEST_F(PlatformClipboardTest, bitmapsOfAnotherProgramBecomePng)
{
    for (const auto &[form, format] :
        {std::pair("image/tiff", "tiff"), std::pair("image/bmp", "bmp"),
            std::pair("image/jpeg", "jpg"), std::pair("image/webp", "webp")}) {
        copyWithXclip(QLatin1StringView(form), pictureAs(format));
        const auto payload = read();
        ASSERT_TRUE(payload.imagePNGData) << form;
        EXPECT_TRUE(payload.imagePNGData->startsWith("\x89PNG")) << form;
        EXPECT_EQ(unpacked(*payload.imagePNGData).size(), samplePicture().size()) << form;
    }
}

TEST_F(PlatformClipboardTest, pdfOfAnotherProgramIsRead)
{
    copyWithXclip(u"application/pdf"_s, "%PDF-1.4 \xff\x00 end"_ba);
    EXPECT_EQ(read().pdfData, "%PDF-1.4 \xff\x00 end"_ba);
}

TEST_F(PlatformClipboardTest, filesOfAnotherProgramAreReadWithoutRepeats)
{
    copyWithXclip(
        u"text/uri-list"_s, "file:///b%20c.png\r\nfile:///a.pdf\r\nfile:///x/../b%20c.png\r\n");
    EXPECT_THAT(
        read().fileURLs, ElementsAre(QUrl::fromLocalFile(u"/b c.png"_s), QUrl(u"file:///a.pdf"_s)));
}

TEST_F(PlatformClipboardTest, severalFormsOfAnotherProgramAreReadTogether)
{
    const QString picture = file(u"on_disk.png"_s, "file");
    copyForms({{u"image/png"_s, pictureAs("png")}, {u"application/pdf"_s, "%PDF"},
        {u"text/uri-list"_s, QUrl::fromLocalFile(picture).toEncoded()},
        {u"text/plain"_s, picture.toUtf8()}});
    const auto payload = read();
    EXPECT_EQ(payload.imagePNGData, pictureAs("png"));
    EXPECT_EQ(payload.pdfData, "%PDF");
    EXPECT_THAT(payload.fileURLs, ElementsAre(QUrl::fromLocalFile(picture)));
    EXPECT_EQ(payload.text, QString());

    const auto intake = outcomeOf(clipboard->attachments(payload, {}));
    ASSERT_EQ(intake.attachments.size(), 3);
    EXPECT_EQ(intake.attachments.at(0).filename, u"ClipboardImage.png"_s);
    EXPECT_EQ(intake.attachments.at(1).filename, u"ClipboardDocument.pdf"_s);
    EXPECT_EQ(intake.attachments.at(2).bytes, "file");
}

TEST_F(PlatformClipboardTest, thirtyMegabytesComeWholeAndTheMainThreadStaysFree)
{
    QByteArray large(30'000'000, 'a');
    for (qsizetype at = 0; at < large.size(); at += 997) {
        large[at] = static_cast<char>('b' + at % 20);
    }
    copyWithXclip(u"application/pdf"_s, large);
    LongestGap gap;
    EXPECT_TRUE(read().pdfData == large);
    EXPECT_LT(gap.inMilliseconds(), 500);
}

TEST_F(PlatformClipboardTest, pictureThatWouldTakeGigabytesIsNoAttachment)
{
    for (const auto &[form, bytes] :
        {std::pair("image/png", hugePng()), std::pair("image/bmp", hugeBmp()),
            std::pair("image/tiff", hugeTiff()), std::pair("image/gif", hugeGif())}) {
        copyWithXclip(QLatin1StringView(form), bytes);
        EXPECT_FALSE(read().hasContent()) << form;
    }
}

TEST_F(PlatformClipboardTest, ownerThatHangsIsAnEmptyClipboardAndFreezesNothing)
{
    copyWithXclip(u"UTF8_STRING"_s, "never given");
    clipboard = make({400ms, 1min, 1'000'000});
    hangOther();
    LongestGap gap;
    EXPECT_FALSE(read().hasContent());
    EXPECT_EQ(outcomeOf(clipboard->text({})), QString());
    EXPECT_LT(gap.inMilliseconds(), 300) << "less than any wait for the owner";
}

TEST_F(PlatformClipboardTest, pasteDoesNotWaitBehindTheTextThatIsBeingCached)
{
    copyWithXclip(u"UTF8_STRING"_s, "never given");
    clipboard = make({2s, 1min, 1'000'000});
    turnUntilCached();
    hangOther();
    Q_EMIT system->dataChanged();
    ASSERT_GE(scope->running(), 1U) << "the cache waits for the owner";
    QElapsedTimer sinceBegin;
    sinceBegin.start();
    EXPECT_FALSE(read().hasContent());
    EXPECT_LT(std::chrono::milliseconds(sinceBegin.elapsed()), 3500ms) << "one wait, not two";
}

TEST_F(PlatformClipboardTest, ownerThatDiesWhileItIsAskedIsNotWaitedFor)
{
    copyWithXclip(u"UTF8_STRING"_s, "never given");
    clipboard = make({10min, 10min, 1'000'000});
    turnUntilCached();
    hangOther();
    const auto reading = watch(clipboard->read({}));
    other->kill();
    EXPECT_FALSE(outcomeOf(reading).hasContent());
}

TEST_F(PlatformClipboardTest, stopEndsAReadThatHangs)
{
    copyWithXclip(u"UTF8_STRING"_s, "never given");
    clipboard = make({10min, 10min, 1'000'000});
    turnUntilCached();
    hangOther();
    std::stop_source stop;
    const auto reading = watch(clipboard->read(stop.get_token()));
    stop.request_stop();
    EXPECT_THROW((void)outcomeOf(reading), CancellationError);
}

TEST_F(PlatformClipboardTest, ownerThatWasGivenUpTakesNoHarm)
{
    copyWithXclip(u"UTF8_STRING"_s, "given in the end");
    clipboard = make({100ms, 1min, 1'000'000});
    turnUntilCached();
    hangOther();
    std::stop_source stop;
    const auto stopped = watch(clipboard->read(stop.get_token()));
    const auto givenUp = watch(clipboard->text({}));
    stop.request_stop();
    EXPECT_THROW((void)outcomeOf(stopped), CancellationError);
    EXPECT_EQ(outcomeOf(givenUp), QString());
    ::kill(static_cast<pid_t>(other->processId()), SIGCONT);
    clipboard = make({});
    EXPECT_EQ(read().text, u"given in the end"_s);
    EXPECT_EQ(other->state(), QProcess::Running);
}

TEST_F(PlatformClipboardTest, cachedTextFollowsTheClipboard)
{
    copyWithXclip(u"UTF8_STRING"_s, "first");
    EXPECT_TRUE(comesToCache(u"first"_s));
    copyWithXclip(u"UTF8_STRING"_s, "second");
    EXPECT_TRUE(comesToCache(u"second"_s));
    copyWithXclip(u"image/png"_s, pictureAs("png"));
    EXPECT_TRUE(comesToCache(QString()));
    clipboard->writeText(u"ours"_s);
    EXPECT_TRUE(comesToCache(u"ours"_s));
}

TEST_F(PlatformClipboardTest, cachedTextIsRefreshedWhenAWindowBecomesActive)
{
    Changes changed(system);
    QMimeData *ours = new QMimeData; // whose text changes behind the clipboard's back
    ours->setText(u"first"_s);
    system->setMimeData(ours);
    turnUntilCached();
    ASSERT_EQ(clipboard->cachedText(), u"first"_s);
    changed.count = 0;
    ours->setText(u"second"_s);
    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    turnUntilCached();
    EXPECT_EQ(clipboard->cachedText(), u"first"_s) << "no window of ours is active";
    QWindow window;
    Q_EMIT qGuiApp->focusWindowChanged(&window);
    turnUntilCached();
    EXPECT_EQ(clipboard->cachedText(), u"second"_s);
    EXPECT_EQ(changed.count, 0);
}

TEST_F(PlatformClipboardTest, anotherProgramPastesTheTextThatWasWritten)
{
    clipboard->write(TextPayload{u"from here \U0001f600\nsecond line"_s});
    EXPECT_EQ(pastedByXclip(u"UTF8_STRING"_s), u"from here \U0001f600\nsecond line"_s.toUtf8());
    EXPECT_EQ(read().text, u"from here \U0001f600\nsecond line"_s);
}

TEST_F(PlatformClipboardTest, anotherProgramPastesThePictureThatWasWritten)
{
    clipboard->write(ImagePayload{pictureAs("png")});
    EXPECT_EQ(pastedByXclip(u"image/png"_s), pictureAs("png"));
    const QByteArray bitmap = pastedByXclip(u"image/bmp"_s);
    EXPECT_TRUE(bitmap.startsWith("BM")) << "other formats are made for who asks";
    EXPECT_EQ(unpacked(bitmap).size(), samplePicture().size());
    EXPECT_EQ(read().imagePNGData, pictureAs("png"));
    EXPECT_EQ(read().text, QString());
}

TEST_F(PlatformClipboardTest, bytesThatMakeNoPictureAreWrittenAsTheyAre)
{
    clipboard->writeImage("no picture");
    EXPECT_EQ(pastedByXclip(u"image/png"_s), "no picture");
    EXPECT_FALSE(pastedByXclip(u"TARGETS"_s).contains("image/bmp"));
    EXPECT_EQ(read().imagePNGData, "no picture");
}

TEST_F(PlatformClipboardTest, pdfResultPutsItsPathOnTheClipboardNotADocument)
{
    clipboard->write(PdfPayload{QUrl::fromLocalFile(u"/tmp/a b.pdf"_s), u"preview"_s});
    EXPECT_EQ(pastedByXclip(u"UTF8_STRING"_s), "/tmp/a b.pdf");
    const auto payload = read();
    EXPECT_EQ(payload.text, u"/tmp/a b.pdf"_s);
    EXPECT_FALSE(payload.pdfData);
    EXPECT_THAT(payload.fileURLs, IsEmpty());
}

TEST_F(PlatformClipboardTest, writingTakesThePlaceOfEverything)
{
    copyForms({{u"image/png"_s, pictureAs("png")}, {u"application/pdf"_s, "%PDF"}});
    clipboard->writeText(u"text alone"_s);
    const auto payload = read();
    EXPECT_EQ(payload.text, u"text alone"_s);
    EXPECT_FALSE(payload.imagePNGData);
    EXPECT_FALSE(payload.pdfData);
}

TEST_F(PlatformClipboardTest, whatIsWrittenRightBehindAnotherProgramTakesItsPlace)
{
    clipboard->writeText(u"earlier"_s);
    QGuiApplication::sync(); // Qt knows the time of that, and not of what follows
    const ScriptedSelectionOwner owner(ScriptedSelectionOwner::Behaviour::SendsPieces);
    clipboard->writeText(u"later than the other"_s);
    EXPECT_EQ(pastedByXclip(u"UTF8_STRING"_s), "later than the other");
    EXPECT_EQ(read().text, u"later than the other"_s);
}

TEST_F(PlatformClipboardTest, whatWasWrittenStaysWhenThisObjectGoes)
{
    clipboard->writeImage(pictureAs("png"));
    clipboard.reset();
    EXPECT_EQ(pastedByXclip(u"image/png"_s), pictureAs("png"));
    EXPECT_EQ(pastedByXclip(u"image/png"_s), pictureAs("png")) << "as often as it is asked for";
}

TEST_F(PlatformClipboardTest, largePictureIsGivenOutWhole)
{
    QByteArray large = pictureAs("png");
    large += QByteArray(12'000'000, 'z'); // behind the end of the picture
    clipboard->writeImage(large);
    EXPECT_TRUE(pastedByXclip(u"image/png"_s) == large);
}

} // namespace
} // namespace velarc
