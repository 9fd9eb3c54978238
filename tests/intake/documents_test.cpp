// The three conversions through the real helper program.

#include "fakes/fake_clock.h"
#include "intake/pdf_export.h"
#include "intake/pdf_text_reader.h"
#include "intake/svg_rasterizer.h"
#include "records/run_errors.h"
#include "support/cpu_time.h"
#include "support/environment.h"
#include "support/printers.h"
#include "support/wait_until.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUuid>

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

template <typename Value> struct Ended
{
    std::optional<Value> value;
    QString failure;
    bool wasCancelled = false;
    bool isOver = false;
};

template <typename Value>
QCoro::Task<void> keep(QCoro::Task<Value> task, std::shared_ptr<Ended<Value>> ended)
{
    try {
        ended->value = co_await task;
    } catch (const CancellationError &) {
        ended->wasCancelled = true;
    } catch (const std::exception &error) {
        ended->failure = errorDescription(error);
    }
    ended->isOver = true;
}

template <typename Value> Ended<Value> endOf(QCoro::Task<Value> task)
{
    const auto ended = std::make_shared<Ended<Value>>();
    static_cast<void>(keep(std::move(task), ended));
    EXPECT_TRUE(waitUntil([&] { return ended->isOver; }, 60s));
    return *ended;
}

QString helper()
{
    return QStringLiteral(VELARC_DOCUMENTS);
}

// What another program says of a file.
QString saidBy(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QByteArray exported(const QString &text, const QString &title, QString *path = nullptr)
{
    PdfExport pdfExport(helper());
    const auto ended = endOf(pdfExport.exportPDF(text, title, {}));
    if (!ended.value) {
        ADD_FAILURE() << ended.failure.toStdString();
        return {};
    }
    const QString name = ended.value->toLocalFile();
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    if (path != nullptr) {
        *path = name;
    } else {
        file.remove();
    }
    return bytes;
}

PdfText readBack(const QByteArray &pdf)
{
    PdfTextReader reader(helper());
    return endOf(reader.read(pdf, {})).value.value_or(PdfText{});
}

TEST(PdfExport, slashesAndColonsOfTheTitleBecomeHyphensInTheName)
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    EXPECT_EQ(pdfFileName(u"a/b:c/d"_s, uuid), u"a-b-c-d-01234567.pdf"_s);
}

TEST(PdfExport, nameOfALongTitleIsCutBetweenTwoCharacters)
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    const QString name = pdfFileName(QString(300, QChar(0x00E4)), uuid);
    EXPECT_LE(name.toUtf8().size(), 255);
    EXPECT_TRUE(name.endsWith(u"\u00E4-01234567.pdf"_s));
}

TEST(PdfExport, nameOfATitleThatIsOneEndlessCharacterIsTheRandomPartAlone)
{
    const QUuid uuid(u"{01234567-89ab-cdef-0123-456789abcdef}"_s);
    EXPECT_EQ(pdfFileName(u'e' + QString(1'000'000, QChar(0x0301)), uuid), u"-01234567.pdf"_s);
}

TEST(PdfExport, titleOfAMillionLettersHoldsNothingUp)
{
    QString path;
    const QString title(1'000'000, u'M');
    const auto time = cpuTime([&] { exported(u"hello"_s, title, &path); });
    EXPECT_LT(time.count(), 0.25) << "of the main thread";
    EXPECT_EQ(QFileInfo(path).fileName().size(), 255);
    EXPECT_TRUE(saidBy(u"pdftotext"_s, {path, u"-"_s}).contains(u"hello"_s));
    QFile::remove(path);
}

TEST(PdfExport, fileIsItsUsersAloneAndTwoExportsAreTwoFiles)
{
    QString first;
    QString second;
    exported(u"text"_s, u"Title"_s, &first);
    exported(u"text"_s, u"Title"_s, &second);
    EXPECT_NE(first, second);
    for (const QString &path : {first, second}) {
        EXPECT_EQ(QFileInfo(path).permissions(),
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser
                | QFileDevice::WriteUser);
        QFile::remove(path);
    }
}

TEST(PdfExport, blankTitleHasAWordOfItsOwn)
{
    QString path;
    exported(u"text"_s, u" "_s, &path);
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(u"Velarc Result-"_s));
    EXPECT_TRUE(saidBy(u"pdfinfo"_s, {path}).contains(u"Velarc Result"_s));
    QFile::remove(path);
}

TEST(PdfExport, pageIsALetterAndNamesItsTitleWhereAnotherProgramReadsIt)
{
    QString path;
    exported(u"hello"_s, u"A Title"_s, &path);
    const QString info = saidBy(u"pdfinfo"_s, {path});
    EXPECT_TRUE(info.contains(u"612 x 792 pts (letter)"_s)) << info.toStdString();
    EXPECT_TRUE(info.contains(u"A Title"_s));
    EXPECT_TRUE(saidBy(u"pdftotext"_s, {path, u"-"_s}).contains(u"hello"_s));
    QFile::remove(path);
}

TEST(PdfExport, blankTextIsOnePageThatSaysSo)
{
    EXPECT_EQ(readBack(exported(u" \n"_s, u"T"_s)).text, u"T\nNo content."_s);
}

TEST(PdfExport, longTextHasThreePagesEachHeadedByTheTitle)
{
    QString lines;
    for (int line = 0; line < 130; ++line) {
        lines += u"line "_s + QString::number(line) + u'\n';
    }
    QString path;
    exported(lines, u"Heading"_s, &path);
    EXPECT_TRUE(saidBy(u"pdfinfo"_s, {path}).contains(QRegularExpression(u"Pages: +3\n"_s)));
    EXPECT_EQ(saidBy(u"pdftotext"_s, {path, u"-"_s}).count(u"Heading"_s), 3);
    QFile::remove(path);
}

TEST(PdfExport, otherScriptsAreReadBackAsTheyWereWritten)
{
    const QString text = u"gr\u00FC\u00DFe \u4E2D\u6587"_s;
    EXPECT_TRUE(readBack(exported(text, u"T"_s)).text.value_or(QString()).contains(text));
}

TEST(PdfExport, missingHelperIsNoContext)
{
    PdfExport pdfExport(u"/nonexistent/helper"_s);
    EXPECT_EQ(endOf(pdfExport.exportPDF(u"x"_s, u"T"_s, {})).failure,
        u"Could not initialize PDF context."_s);
}

TEST(PdfExport, folderThatTakesNoFileIsAFailedWriteAndNoMore)
{
    const ScopedVariable folder("TMPDIR", "/proc"); // not even for root
    PdfExport pdfExport(helper());
    EXPECT_EQ(endOf(pdfExport.exportPDF(u"x"_s, u"T"_s, {})).failure,
        u"Could not write the generated PDF file."_s);
}

TEST(PdfExport, withoutATemporaryFolderNothingIsWrittenWhereTheProgramWasStarted)
{
    const QTemporaryDir started;
    const QString before = QDir::currentPath();
    const ScopedVariable none("TMPDIR", started.filePath(u"none"_s).toStdString());
    ASSERT_TRUE(QDir::setCurrent(started.path()));
    PdfExport pdfExport(helper());
    const auto ended = endOf(pdfExport.exportPDF(u"x"_s, u"T"_s, {}));
    EXPECT_EQ(ended.failure, u"Could not write the generated PDF file."_s);
    EXPECT_TRUE(QDir(started.path()).isEmpty());
    QDir::setCurrent(before);
}

TEST(PdfExport, fileLiesInTheTemporaryFolder)
{
    const QTemporaryDir folder;
    const ScopedVariable temporary("TMPDIR", folder.path().toStdString());
    QString path;
    exported(u"text"_s, u"a/b"_s, &path);
    EXPECT_EQ(QFileInfo(path).path(), folder.path());
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith(u"a-b-"_s));
}

TEST(PdfText, pagesAreTrimmedBlankOnesDroppedAndSetApartByABlankLine)
{
    EXPECT_EQ(textOfPages(" one \n\f \n\ftwo\n\f"), u"one\n\ntwo"_s);
    EXPECT_EQ(textOfPages(" \f\n\f"), std::nullopt);
    EXPECT_EQ(textOfPages({}), std::nullopt);
}

TEST(PdfText, textOfEveryPageIsReadInOrder)
{
    const PdfText text = readBack(exported(u"first\fsecond"_s, u"T"_s));
    EXPECT_EQ(text.text, u"T\nfirst\n\nT\nsecond"_s);
    EXPECT_FALSE(text.isCut);
}

TEST(PdfText, whatIsNoPdfHasNoText)
{
    for (const QByteArray &bytes : {QByteArray(), QByteArray("garbage"),
             QByteArray("%PDF-1.4\n%%EOF"), exported(u"x"_s, u"T"_s).left(300)}) {
        const PdfText text = readBack(bytes);
        EXPECT_EQ(text.text, std::nullopt);
        EXPECT_FALSE(text.isCut);
    }
}

TEST(PdfText, documentThatTakesTooLongKeepsItsPagesAndSaysThatSomeAreMissing)
{
    PdfTextReader reader(QStringLiteral(VELARC_SLOW_HELPER), 300ms);
    const auto ended = endOf(reader.read("any", {}));
    EXPECT_EQ(ended.value->text, u"page one"_s);
    EXPECT_TRUE(ended.value->isCut);
}

TEST(PdfText, stopEndsTheHelperAtOnce)
{
    PdfTextReader reader(QStringLiteral(VELARC_SLOW_HELPER), 60s);
    std::stop_source stop;
    const auto ended = std::make_shared<Ended<PdfText>>();
    static_cast<void>(keep(reader.read("any", stop.get_token()), ended));
    stop.request_stop();
    EXPECT_FALSE(ended->isOver) << "nothing resumes inside the request";
    EXPECT_TRUE(waitUntil([&] { return ended->isOver; }, 10s));
    EXPECT_TRUE(ended->wasCancelled);
}

TEST(PdfText, inputThatTheHelperDoesNotReadEndsNothing)
{
    PdfTextReader reader(u"/bin/true"_s);
    const auto ended = endOf(reader.read(QByteArray(50'000'000, 'x'), {}));
    EXPECT_EQ(ended.value->text, std::nullopt);
}

class SvgTest : public ::testing::Test
{
protected:
    SVGRasterizer rasterizer{helper()};

    Ended<QByteArray> drawn(const QByteArray &svg)
    {
        return endOf(rasterizer.rasterize(svg, QSize(64, 64), {}));
    }
};

TEST_F(SvgTest, drawingBecomesAPicture)
{
    const auto ended = drawn("<svg xmlns='http://www.w3.org/2000/svg'/>");
    ASSERT_TRUE(ended.value) << ended.failure.toStdString();
    EXPECT_TRUE(ended.value->startsWith("\x89PNG\r\n"));
}

TEST_F(SvgTest, differentDrawingsAreDifferentPictures)
{
    const auto red = drawn("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1'>"
                           "<rect width='1' height='1' fill='red'/></svg>");
    const auto blank = drawn("no drawing at all");
    ASSERT_TRUE(red.value && blank.value);
    EXPECT_NE(*red.value, *blank.value);
    EXPECT_EQ(*blank.value, *drawn("other bytes").value);
}

TEST_F(SvgTest, noBytesAreInvalid)
{
    EXPECT_EQ(drawn({}).failure, u"The SVG data is invalid."_s);
}

TEST_F(SvgTest, missingAndLateHelpersAreNamed)
{
    SVGRasterizer missing(u"/nonexistent/helper"_s);
    EXPECT_EQ(endOf(missing.rasterize("x", QSize(8, 8), {})).failure,
        u"Failed to render SVG: The document helper could not be started."_s);
    SVGRasterizer late(QStringLiteral(VELARC_SLOW_HELPER), 200ms);
    EXPECT_EQ(endOf(late.rasterize("x", QSize(8, 8), {})).failure,
        u"Failed to render SVG: The drawing takes too long."_s);
}

TEST_F(SvgTest, errorsHaveTheirSentences)
{
    EXPECT_EQ(SVGRasterizerError::webKitUnavailable().message(),
        u"SVG rendering is unavailable on this platform."_s);
    EXPECT_EQ(
        SVGRasterizerError::encodingFailed().message(), u"Failed to encode SVG preview as PNG."_s);
    EXPECT_EQ(PDFExportServiceError::writeFailed().message(),
        u"Could not write the generated PDF file."_s);
}

} // namespace
} // namespace velarc
