// The clipboard on Wayland, with other programs as the other side.

#include "picture_samples.h"
#include "scripted_documents.h"

#include "base/errors.h"
#include "intake/platform_clipboard.h"
#include "support/longest_gap.h"
#include "support/outcome.h"
#include "support/wait_until.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QRasterWindow>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class KeyWindow final : public QRasterWindow
{
public:
    bool wasKeyPressed = false;

protected:
    void keyPressEvent(QKeyEvent *) override { wasKeyPressed = true; }
};

// The clipboard of a seat is told to the program alone whose window has the keyboard.
class WaylandClipboard : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QClipboard *system = QGuiApplication::clipboard();
    std::shared_ptr<TaskScope> scope = std::make_shared<TaskScope>();
    std::unique_ptr<PlatformClipboard> clipboard = make({});
    KeyWindow window;
    std::unique_ptr<QProcess> other; // the program that copies

    void SetUp() override
    {
        ASSERT_EQ(QGuiApplication::platformName(), u"wayland"_s);
        window.resize(100, 100);
        window.show();
        ASSERT_TRUE(waitUntil([this] { return window.isActive(); }));
    }

    ~WaylandClipboard() override
    {
        end();
        clipboard.reset();
        EXPECT_TRUE(scope->finish());
    }

    [[nodiscard]] std::unique_ptr<PlatformClipboard> make(SelectionBounds bounds) const
    {
        auto reader = std::make_shared<const AttachmentReader>(
            std::make_shared<ScriptedPdfTexts>(), std::make_shared<ScriptedDrawings>());
        return std::make_unique<PlatformClipboard>(system, std::move(reader), scope, bounds);
    }

    void end()
    {
        if (other) {
            other->kill(); // also one that is stopped
            other->waitForFinished();
            other.reset();
        }
    }

    // Has another program copy, and waits until the clipboard says so.
    void copy(const QString &form, const QByteArray &bytes)
    {
        bool hasChanged = false;
        QObject context;
        QObject::connect(system, &QClipboard::dataChanged, &context, [&] { hasChanged = true; });
        end();
        QFile file(folder.filePath(u"copied"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        other = std::make_unique<QProcess>();
        other->setStandardInputFile(file.fileName());
        other->start(u"wl-copy"_s, {u"--foreground"_s, u"--type"_s, form});
        ASSERT_TRUE(other->waitForStarted());
        ASSERT_TRUE(waitUntil([&] {
            return hasChanged && system->mimeData() != nullptr
                && system->mimeData()->hasFormat(form);
        }));
    }

    void hangOther() const
    {
        const auto process = static_cast<pid_t>(other->processId());
        ASSERT_GT(process, 0);
        ::kill(process, SIGSTOP);
    }

    [[nodiscard]] ClipboardPayload read() const { return outcomeOf(clipboard->read({})); }

    // A key press, without which no program may claim the clipboard.
    void pressKey()
    {
        QProcess typing;
        typing.start(u"wtype"_s, {u"-s"_s, u"50"_s, u"-k"_s, u"F12"_s, u"-s"_s, u"50"_s});
        ASSERT_TRUE(waitUntil([this] { return window.wasKeyPressed; }));
        ASSERT_TRUE(typing.waitForFinished());
    }

    // What another program gets when it pastes.
    [[nodiscard]] static QByteArray pasted(const QString &form)
    {
        QProcess paste;
        paste.start(u"wl-paste"_s, {u"--no-newline"_s, u"--type"_s, form});
        EXPECT_TRUE(waitUntil([&] { return paste.state() == QProcess::NotRunning; }));
        return paste.readAllStandardOutput();
    }

    [[nodiscard]] static bool comesToPaste(const QString &form, const QByteArray &bytes)
    {
        for (int attempt = 0; attempt < 50; ++attempt) {
            if (pasted(form) == bytes) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(WaylandClipboard, textOfAnotherProgramIsRead)
{
    copy(u"text/plain;charset=utf-8"_s, "gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(read().text, u"gr\u00FC\u00DF"_s);
    EXPECT_TRUE(waitUntil([this] { return clipboard->cachedText() == u"gr\u00FC\u00DF"_s; }));
}

TEST_F(WaylandClipboard, pngOfAnotherProgramIsReadByteForByte)
{
    const QByteArray png = pictureAs("PNG");
    copy(u"image/png"_s, png);
    EXPECT_EQ(read().imagePNGData, png);
}

TEST_F(WaylandClipboard, bitmapOfAnotherProgramBecomesPng)
{
    copy(u"image/bmp"_s, pictureAs("BMP"));
    const auto payload = read();
    ASSERT_TRUE(payload.imagePNGData);
    EXPECT_TRUE(payload.imagePNGData->startsWith("\x89PNG"));
    EXPECT_EQ(unpacked(*payload.imagePNGData).size(), samplePicture().size());
}

TEST_F(WaylandClipboard, pdfOfAnotherProgramIsRead)
{
    copy(u"application/pdf"_s, "%PDF-1.4 anything");
    EXPECT_EQ(read().pdfData, QByteArray("%PDF-1.4 anything"));
}

TEST_F(WaylandClipboard, filesOfAnotherProgramAreReadWithoutRepeats)
{
    copy(u"text/uri-list"_s, "file:///tmp/a.png\r\nfile:///tmp/b.png\r\nfile:///tmp/./a.png\r\n");
    EXPECT_THAT(
        read().fileURLs, ElementsAre(QUrl(u"file:///tmp/a.png"_s), QUrl(u"file:///tmp/b.png"_s)));
}

TEST_F(WaylandClipboard, thirtyMegabytesComeWholeAndTheMainThreadStaysFree)
{
    const QByteArray bytes("\x89PNG\r\n\x1a\n" + QByteArray(30'000'000, 'x'));
    copy(u"image/png"_s, bytes);
    LongestGap gap;
    EXPECT_EQ(read().imagePNGData, bytes);
    EXPECT_LT(gap.inMilliseconds(), 200);
}

TEST_F(WaylandClipboard, ownerThatHangsIsAnEmptyClipboardAndFreezesNothing)
{
    copy(u"application/pdf"_s, "never given");
    clipboard = make({400ms, 1min, 1'000'000});
    hangOther();
    LongestGap gap;
    EXPECT_FALSE(read().hasContent());
    EXPECT_LT(gap.inMilliseconds(), 300) << "less than any wait for the owner";
}

TEST_F(WaylandClipboard, ownerThatSendsTooMuchGivesNothing)
{
    copy(u"image/png"_s, QByteArray(3'000'000, 'x'));
    clipboard = make({3s, 1min, 1'000'000});
    EXPECT_EQ(read().imagePNGData, std::nullopt);
}

TEST_F(WaylandClipboard, stopEndsAReadThatHangs)
{
    copy(u"application/pdf"_s, "never given");
    clipboard = make({10min, 10min, 1'000'000});
    hangOther();
    std::stop_source stop;
    const auto outcome = watch(clipboard->read(stop.get_token()));
    stop.request_stop();
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
}

TEST_F(WaylandClipboard, anotherProgramPastesTheTextThatWasWritten)
{
    pressKey();
    clipboard->writeText(u"gr\u00FC\u00DF"_s);
    EXPECT_TRUE(comesToPaste(u"text/plain;charset=utf-8"_s, "gr\xC3\xBC\xC3\x9F"));
    EXPECT_EQ(read().text, u"gr\u00FC\u00DF"_s) << "and so do we";
}

TEST_F(WaylandClipboard, anotherProgramPastesThePictureThatWasWritten)
{
    pressKey();
    clipboard->writeImage(pictureAs("PNG"));
    EXPECT_TRUE(comesToPaste(u"image/png"_s, pictureAs("PNG"))) << "byte for byte";
    EXPECT_EQ(unpacked(pasted(u"image/bmp"_s)).size(), samplePicture().size());
    EXPECT_EQ(read().imagePNGData, pictureAs("PNG")) << "and so do we";
}

TEST_F(WaylandClipboard, pdfResultPutsItsPathOnTheClipboard)
{
    pressKey();
    clipboard->write(PdfPayload{QUrl(u"file:///tmp/result.pdf"_s), u"preview"_s});
    EXPECT_TRUE(comesToPaste(u"text/plain;charset=utf-8"_s, "/tmp/result.pdf"));
}

} // namespace
} // namespace velarc
