#include "scripted_documents.h"

#include "intake/attachments.h"
#include "support/outcome.h"
#include "support/wait_until.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Attachments : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    std::shared_ptr<ScriptedPdfTexts> pdfTexts = std::make_shared<ScriptedPdfTexts>();
    std::shared_ptr<ScriptedDrawings> drawings = std::make_shared<ScriptedDrawings>();
    AttachmentReader reader{pdfTexts, drawings};

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] QUrl file(const QString &name, const QByteArray &bytes) const
    {
        QFile made(path(name));
        EXPECT_TRUE(made.open(QIODevice::WriteOnly));
        made.write(bytes);
        return QUrl::fromLocalFile(path(name));
    }

    [[nodiscard]] AttachmentIntake drop(const QList<QUrl> &urls) const
    {
        return outcomeOf(reader.attachmentsFromFiles(urls, {}));
    }

    [[nodiscard]] AttachmentIntake paste(const ClipboardPayload &payload) const
    {
        return outcomeOf(reader.attachmentsFromPayload(payload, {}));
    }
};

QStringList namesOf(const AttachmentIntake &intake)
{
    QStringList names;
    for (const InputAttachment &attachment : intake.attachments) {
        names.append(attachment.filename);
    }
    return names;
}

TEST_F(Attachments, pngFileIsTakenByteForByte)
{
    const QByteArray bytes("\x89PNG no matter what follows\0\xff", 30);
    const auto intake = drop({file(u"a.png"_s, bytes)});
    ASSERT_EQ(intake.attachments.size(), 1);
    const InputAttachment &attachment = intake.attachments.first();
    EXPECT_EQ(attachment.kind, InputAttachmentKind::Image);
    EXPECT_EQ(attachment.filename, u"a.png"_s);
    EXPECT_EQ(attachment.mimeType, u"image/png"_s);
    EXPECT_EQ(attachment.bytes, bytes);
    EXPECT_FALSE(attachment.extractedText);
    EXPECT_FALSE(attachment.id.isNull());
    EXPECT_THAT(intake.notices, IsEmpty());
}

TEST_F(Attachments, pdfFileBringsItsText)
{
    pdfTexts->answer.text = u"first page\n\nsecond page"_s;
    const auto intake = drop({file(u"a.pdf"_s, "%PDF")});
    ASSERT_EQ(intake.attachments.size(), 1);
    const InputAttachment &attachment = intake.attachments.first();
    EXPECT_EQ(attachment.kind, InputAttachmentKind::Pdf);
    EXPECT_EQ(attachment.mimeType, u"application/pdf"_s);
    EXPECT_EQ(attachment.bytes, "%PDF");
    EXPECT_EQ(attachment.extractedText, u"first page\n\nsecond page"_s);
    EXPECT_THAT(pdfTexts->asked, ElementsAre("%PDF"));
}

TEST_F(Attachments, drawingBecomesAPictureOf1024By1024)
{
    const auto intake = drop({file(u"a.svg"_s, "<svg/>")});
    ASSERT_EQ(intake.attachments.size(), 1);
    const InputAttachment &attachment = intake.attachments.first();
    EXPECT_EQ(attachment.kind, InputAttachmentKind::Svg);
    EXPECT_EQ(attachment.filename, u"a.svg"_s);
    EXPECT_EQ(attachment.mimeType, u"image/png"_s);
    EXPECT_EQ(attachment.bytes, "picture");
    EXPECT_FALSE(attachment.extractedText);
    EXPECT_THAT(drawings->asked, ElementsAre("<svg/>"));
    EXPECT_THAT(drawings->sizes, ElementsAre(QSize(1024, 1024)));
}

TEST_F(Attachments, clipboardWithAnImageAndAFileGivesTheImageFirst)
{
    ClipboardPayload payload;
    payload.imagePNGData = "pixels";
    payload.fileURLs = {file(u"a.png"_s, "file")};
    const auto intake = paste(payload);
    EXPECT_THAT(namesOf(intake), ElementsAre(u"ClipboardImage.png"_s, u"a.png"_s));
    EXPECT_EQ(intake.attachments.first().bytes, "pixels");
    EXPECT_EQ(intake.attachments.first().kind, InputAttachmentKind::Image);
    EXPECT_EQ(intake.attachments.first().mimeType, u"image/png"_s);
}

TEST_F(Attachments, clipboardWithEverythingGivesImageThenPdfThenFilesAndTheirNotices)
{
    pdfTexts->answer.text = u"hello"_s;
    ClipboardPayload payload;
    payload.text = u"not looked at"_s;
    payload.imagePNGData = "pixels";
    payload.pdfData = "%PDF";
    payload.fileURLs = {QUrl::fromLocalFile(path(u"gone.png"_s)), file(u"b.svg"_s, "<svg/>")};
    const auto intake = paste(payload);
    EXPECT_THAT(namesOf(intake),
        ElementsAre(u"ClipboardImage.png"_s, u"ClipboardDocument.pdf"_s, u"b.svg"_s));
    EXPECT_EQ(intake.attachments.at(1).extractedText, u"hello"_s);
    EXPECT_EQ(intake.attachments.at(1).mimeType, u"application/pdf"_s);
    EXPECT_THAT(intake.notices, ElementsAre(u"Could not read PNG file: gone.png"_s));
}

TEST_F(Attachments, clipboardWithTextAloneGivesNone)
{
    ClipboardPayload payload;
    payload.text = u"text"_s;
    const auto intake = paste(payload);
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_THAT(intake.notices, IsEmpty());
}

TEST_F(Attachments, sameFileTwiceInADropGivesTwo)
{
    const QUrl url = file(u"a.png"_s, "x");
    const auto intake = drop({url, url});
    EXPECT_THAT(namesOf(intake), ElementsAre(u"a.png"_s, u"a.png"_s));
    EXPECT_NE(intake.attachments.at(0).id, intake.attachments.at(1).id);
}

TEST_F(Attachments, extensionInCapitalsIsTakenAsInSmallLetters)
{
    const auto intake = drop({file(u"A.PNG"_s, "x"), file(u"B.Pdf"_s, "y"), file(u"C.sVg"_s, "z")});
    EXPECT_THAT(namesOf(intake), ElementsAre(u"A.PNG"_s, u"B.Pdf"_s, u"C.sVg"_s));
    EXPECT_THAT(intake.notices, IsEmpty());
}

TEST_F(Attachments, jpegFileGivesANoticeWithItsExtensionAndName)
{
    const auto intake = drop({file(u"Photo.JPG"_s, "\xff\xd8\xff")});
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_THAT(intake.notices, ElementsAre(u"Unsupported file type: .jpg (Photo.JPG)"_s));
}

TEST_F(Attachments, fileWithoutAnExtensionGivesANoticeWithTheWordUnknown)
{
    const auto intake =
        drop({file(u"notes"_s, "x"), file(u"ends."_s, "x"), file(u".png"_s, "hidden")});
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_THAT(intake.notices,
        ElementsAre(u"Unsupported file type: .unknown (notes)"_s,
            u"Unsupported file type: .unknown (ends.)"_s,
            u"Unsupported file type: .unknown (.png)"_s));
}

TEST_F(Attachments, folderIsNamedByItsLastComponent)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"stuff"_s));
    const auto intake = drop({QUrl::fromLocalFile(path(u"stuff/"_s))});
    EXPECT_THAT(intake.notices, ElementsAre(u"Unsupported file type: .unknown (stuff)"_s));
}

TEST_F(Attachments, damagedPdfGivesAnAttachmentWithoutTextAndNoNotice)
{
    const auto intake = drop({file(u"a.pdf"_s, "no PDF at all")});
    ASSERT_EQ(intake.attachments.size(), 1);
    EXPECT_FALSE(intake.attachments.first().extractedText);
    EXPECT_THAT(intake.notices, IsEmpty());
}

TEST_F(Attachments, pdfThatWasCutByABoundKeepsItsTextAndSaysSo)
{
    pdfTexts->answer = {u"the first pages"_s, true};
    ClipboardPayload payload;
    payload.pdfData = "%PDF";
    payload.fileURLs = {file(u"long.pdf"_s, "%PDF")};
    const auto intake = paste(payload);
    ASSERT_EQ(intake.attachments.size(), 2);
    EXPECT_EQ(intake.attachments.at(1).extractedText, u"the first pages"_s);
    EXPECT_THAT(intake.notices,
        ElementsAre(u"Could not read all pages of PDF file: ClipboardDocument.pdf"_s,
            u"Could not read all pages of PDF file: long.pdf"_s));
}

TEST_F(Attachments, drawingThatCannotBeRenderedGivesANoticeAndTheOthersStay)
{
    const auto intake = drop({file(u"a.png"_s, "a"), file(u"bad.svg"_s, "no drawing"),
        file(u"c.svg"_s, "<svg/>"), file(u"d.pdf"_s, "d")});
    EXPECT_THAT(namesOf(intake), ElementsAre(u"a.png"_s, u"c.svg"_s, u"d.pdf"_s));
    EXPECT_THAT(intake.notices, ElementsAre(u"Could not rasterize SVG file: bad.svg"_s));
}

TEST_F(Attachments, attachmentsKeepTheOrderOfTheFilesHoweverLongOneTakes)
{
    drawings->hold = std::make_shared<Wakeup>();
    const auto intake =
        watch(reader.attachmentsFromFiles({file(u"slow.svg"_s, "<svg/>"), file(u"b.png"_s, "b"),
                                              file(u"c.tar.gz"_s, "c"), file(u"d.pdf"_s, "d")},
            {}));
    ASSERT_TRUE(waitUntil([&] { return !drawings->asked.isEmpty(); }));
    EXPECT_THAT(pdfTexts->asked, IsEmpty()) << "one after the other";
    drawings->hold->fire();
    EXPECT_THAT(namesOf(outcomeOf(intake)), ElementsAre(u"slow.svg"_s, u"b.png"_s, u"d.pdf"_s));
}

TEST_F(Attachments, eachFileThatIsGoneGivesTheNoticeOfItsKind)
{
    const auto gone = [this](const QString &name) { return QUrl::fromLocalFile(path(name)); };
    const auto intake = drop({gone(u"a.png"_s), gone(u"b.pdf"_s), gone(u"c.svg"_s)});
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_THAT(intake.notices,
        ElementsAre(u"Could not read PNG file: a.png"_s, u"Could not read PDF file: b.pdf"_s,
            u"Could not rasterize SVG file: c.svg"_s));
    EXPECT_THAT(drawings->asked, IsEmpty());
}

TEST_F(Attachments, noFilesGiveNothing)
{
    const auto intake = drop({});
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_FALSE(intake.joinedNotices());
}

TEST_F(Attachments, whatIsNoRegularFileGivesANoticeAndNeverAHang)
{
    ASSERT_EQ(::mkfifo(path(u"pipe.png"_s).toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::mkfifo(path(u"pipe.pdf"_s).toUtf8().constData(), 0600), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.png"_s));
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, path(u"device.png"_s)));
    ASSERT_TRUE(QFile::link(u"/dev/ptmx"_s, path(u"terminal.svg"_s)));
    ASSERT_TRUE(QFile::link(path(u"loop.png"_s), path(u"loop.png"_s)));
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{AF_UNIX, {}};
    qstrncpy(address.sun_path, path(u"socket.png"_s).toUtf8().constData(), sizeof address.sun_path);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);

    QList<QUrl> urls;
    for (const auto *name : {"pipe.png", "pipe.pdf", "folder.png", "device.png", "terminal.svg",
             "loop.png", "socket.png"}) {
        urls.append(QUrl::fromLocalFile(path(QLatin1StringView(name))));
    }
    const auto intake = drop(urls);
    ::close(listener);
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_EQ(intake.notices.size(), urls.size());
    EXPECT_EQ(intake.notices.value(1), u"Could not read PDF file: pipe.pdf"_s);
    EXPECT_EQ(intake.notices.value(4), u"Could not rasterize SVG file: terminal.svg"_s);
}

// The user "nobody" for as long as it lives, if the test runs as root, who may read everything.
class WithoutRoot
{
public:
    WithoutRoot() : m_user(::geteuid())
    {
        if (m_user == 0 && ::seteuid(65534) != 0) {
            ADD_FAILURE() << "cannot become another user";
        }
    }
    ~WithoutRoot() { EXPECT_EQ(::seteuid(m_user), 0); }
    WithoutRoot(const WithoutRoot &) = delete;
    WithoutRoot &operator=(const WithoutRoot &) = delete;

private:
    uid_t m_user;
};

TEST_F(Attachments, fileWithoutReadPermissionGivesANotice)
{
    const QUrl closed = file(u"closed.png"_s, "x");
    const QUrl open = file(u"open.png"_s, "y");
    ASSERT_EQ(::chmod(folder.path().toUtf8().constData(), 0755), 0);
    ASSERT_EQ(::chmod(open.toLocalFile().toUtf8().constData(), 0644), 0);
    ASSERT_EQ(::chmod(closed.toLocalFile().toUtf8().constData(), 0), 0);
    const WithoutRoot nobody;
    const auto intake = drop({closed, open});
    EXPECT_THAT(namesOf(intake), ElementsAre(u"open.png"_s));
    EXPECT_THAT(intake.notices, ElementsAre(u"Could not read PNG file: closed.png"_s));
}

TEST_F(Attachments, addressElsewhereGivesANotice)
{
    const auto intake = drop({QUrl(u"https://example.org/pictures/a.png"_s)});
    EXPECT_THAT(intake.notices, ElementsAre(u"Could not read PNG file: a.png"_s));
}

TEST_F(Attachments, namesOfAnyKindAreReadAndShown)
{
    const QString odd = u"50% \u00e4 #1?\u4e2d.png"_s;
    const auto intake = drop({file(odd, "odd")});
    ASSERT_EQ(intake.attachments.size(), 1);
    EXPECT_EQ(intake.attachments.first().filename, odd);
    EXPECT_EQ(intake.attachments.first().bytes, "odd");
}

TEST_F(Attachments, nameThatIsNoUtf8IsReadByItsBytes)
{
    const QByteArray raw = folder.path().toUtf8() + "/caf\xe9.png";
    const int made = ::open(raw.constData(), O_CREAT | O_WRONLY, 0600);
    ASSERT_GE(made, 0);
    ASSERT_EQ(::write(made, "latin", 5), 5);
    ::close(made);
    const auto intake =
        drop({QUrl::fromEncoded("file://" + folder.path().toUtf8() + "/caf%E9.png")});
    EXPECT_EQ(::unlink(raw.constData()), 0); // the folder could not remove it
    ASSERT_EQ(intake.attachments.size(), 1);
    EXPECT_EQ(intake.attachments.first().bytes, "latin");
}

TEST_F(Attachments, nameWithAZeroInItNamesNoOtherFile)
{
    const QUrl whole = file(u"a.png"_s, "x");
    const auto intake = drop({QUrl::fromEncoded(whole.toEncoded() + "%00.png")});
    EXPECT_THAT(intake.attachments, IsEmpty());
    EXPECT_EQ(intake.notices.size(), 1);
}

TEST_F(Attachments, fileThatNoMemoryCouldHoldGivesANotice)
{
    const QUrl huge = file(u"huge.png"_s, "x");
    const qint64 memory = qint64(::sysconf(_SC_PHYS_PAGES)) * ::sysconf(_SC_PAGESIZE);
    ASSERT_EQ(::truncate(huge.toLocalFile().toUtf8().constData(), memory + 1), 0);
    const auto intake = drop({huge, file(u"b.png"_s, "b")});
    EXPECT_THAT(namesOf(intake), ElementsAre(u"b.png"_s));
    EXPECT_THAT(intake.notices, ElementsAre(u"Could not read PNG file: huge.png"_s));
}

TEST_F(Attachments, stopEndsTheWholeIntakeWithCancellation)
{
    drawings->hold = std::make_shared<Wakeup>();
    std::stop_source stop;
    const auto intake = watch(reader.attachmentsFromFiles(
        {file(u"a.svg"_s, "<svg/>"), file(u"b.pdf"_s, "b")}, stop.get_token()));
    ASSERT_TRUE(waitUntil([&] { return !drawings->asked.isEmpty(); }));
    stop.request_stop();
    drawings->hold->fire();
    EXPECT_THROW((void)outcomeOf(intake), CancellationError);
    EXPECT_THAT(pdfTexts->asked, IsEmpty());
}

TEST_F(Attachments, intakeGoesOnWithoutItsReader)
{
    auto passing = std::make_unique<AttachmentReader>(pdfTexts, drawings);
    const auto intake =
        watch(passing->attachmentsFromFiles({file(u"a.png"_s, "a"), file(u"b.png"_s, "b")}, {}));
    EXPECT_FALSE(intake->isThere()) << "files are read by a worker";
    passing.reset();
    EXPECT_THAT(namesOf(outcomeOf(intake)), ElementsAre(u"a.png"_s, u"b.png"_s));
}

} // namespace
} // namespace velarc
