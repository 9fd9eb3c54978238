// The text of PDF files that other programs made, beside what another extractor reads in them, and
// of files that are damaged or mean harm. tests/fixtures/documents/make_documents.py made the
// files.

#include "document_helper.h"
#include "written_pdf.h"

#include "intake/pdf_text_reader.h"
#include "support/fixture.h"
#include "support/outcome.h"
#include "support/printers.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>
#include <zlib.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

QByteArray document(const char *name)
{
    return fixtureBytes((QByteArray("documents/") + name + ".pdf").constData());
}

DocumentOutcome textOf(const QByteArray &pdf, std::chrono::milliseconds bound = 2min)
{
    return converted({u"pdf-text"_s}, pdf, bound);
}

PdfText readBy(const QByteArray &pdf, std::chrono::milliseconds bound = 2min)
{
    PdfTextReader reader(QStringLiteral(VELARC_DOCUMENTS), bound);
    return outcomeOf(reader.read(pdf, {}));
}

// The words of each page, the last of which is ended by a form feed.
QList<QStringList> wordsOfPages(const QByteArray &output)
{
    QList<QStringList> pages;
    QStringList texts = QString::fromUtf8(output).split(u'\f');
    texts.removeLast();
    for (const QString &text : texts) {
        pages.append(text.simplified().split(u' '));
    }
    return pages;
}

// A helper that a document brought down has said nothing.
bool endedInOrder(const DocumentOutcome &outcome)
{
    return outcome.end == DocumentEnd::Done
        || (outcome.end == DocumentEnd::Failed && !outcome.message.isEmpty());
}

class EveryProducer : public ::testing::TestWithParam<const char *>
{
};

INSTANTIATE_TEST_SUITE_P(PdfText, EveryProducer,
    ::testing::Values("browser", "office", "tex", "postscript", "drawing", "script"),
    [](const auto &producer) { return std::string(producer.param); });

TEST_P(EveryProducer, everyPageHasTheWordsThatAnotherExtractorReads)
{
    const QByteArray pdf = document(GetParam());
    const auto ours = wordsOfPages(textOf(pdf).output);
    EXPECT_EQ(ours.size(), 3);
    EXPECT_EQ(ours, wordsOfPages(saidBy(u"pdftotext"_s, {u"-"_s, u"-"_s}, pdf)));
}

TEST_P(EveryProducer, lettersAreThoseThatWereWritten)
{
    const QString text = readBy(document(GetParam()))
                             .text.value_or(QString())
                             .simplified()
                             .normalized(QString::NormalizationForm_C); // some set accents apart
    for (const auto &sentence : {u"On Friday the baker found five fluffy cats behind the flour."_s,
             u"Gr\u00FC\u00DFe aus \u00C5rhus"_s,
             u"Monday 8 12 20. Tuesday 9 14 23. Wednesday 7 11 18."_s,
             u"Here the document ends."_s}) {
        EXPECT_TRUE(text.contains(sentence)) << sentence.toStdString();
    }
    EXPECT_LT(text.indexOf(u"harbour"), text.indexOf(u"aus"));
    EXPECT_LT(text.indexOf(u"aus"), text.indexOf(u"document ends"));
}

TEST_P(EveryProducer, documentThatBreaksOffAnywhereBringsNothingDown)
{
    const QByteArray pdf = document(GetParam());
    for (int part = 1; part < 20; ++part) {
        EXPECT_TRUE(endedInOrder(textOf(pdf.left(pdf.size() * part / 20)))) << part;
    }
}

TEST_P(EveryProducer, documentWithWrongBytesBringsNothingDown)
{
    QRandomGenerator random(7);
    for (int round = 0; round < 20; ++round) {
        QByteArray pdf = document(GetParam());
        for (int fault = 0; fault < 40; ++fault) {
            pdf[random.bounded(pdf.size())] = static_cast<char>(random.bounded(256));
        }
        EXPECT_TRUE(endedInOrder(textOf(pdf))) << round;
    }
}

TEST_P(EveryProducer, documentWhoseTableOfObjectsIsLostIsReadAsFarAsAnotherExtractorReadsIt)
{
    QByteArray pdf = document(GetParam());
    const qsizetype start = pdf.lastIndexOf("startxref\n");
    ASSERT_GT(start, 0);
    pdf.replace(start + 10, pdf.size() - start - 10, "7\n%%EOF\n");
    const auto ours = wordsOfPages(textOf(pdf).output);
    EXPECT_EQ(ours, wordsOfPages(saidBy(u"pdftotext"_s, {u"-"_s, u"-"_s}, pdf)));
    // The table of this one holds objects that stand nowhere else.
    EXPECT_EQ(ours.size(), GetParam() == std::string_view("tex") ? 0 : 3);
}

TEST(PdfText, chineseByReferenceIsRead)
{
    EXPECT_EQ(readBy(document("chinese_by_reference")).text,
        u"\u6E2F\u53E3\u7684\u51AC\u5929\n\n\u7B2C\u4E8C\u9875"_s);
}

TEST(PdfText, documentThatIsLockedByAPasswordHasNoTextAndNoNotice)
{
    const PdfText text = readBy(document("locked"));
    EXPECT_EQ(text.text, std::nullopt);
    EXPECT_FALSE(text.isCut);
    EXPECT_EQ(textOf(document("locked")).end, DocumentEnd::Failed);
}

TEST(PdfText, documentThatOnlyMayNotBeChangedIsRead)
{
    EXPECT_EQ(wordsOfPages(textOf(document("open_but_not_to_be_changed")).output),
        wordsOfPages(textOf(document("script")).output));
}

TEST(PdfText, blankPagesBetweenPagesOfTextLeaveOneBlankLine)
{
    const PdfText text = readBy(pdfOfPages({pdfStream(pageContent("one")), pdfStream({}),
        pdfStream(pageContent("   ")), pdfStream(pageContent("two")), pdfStream({})}));
    EXPECT_EQ(text.text, u"one\n\ntwo"_s);
}

TEST(PdfText, pagesWithoutATextLayerGiveNone)
{
    const PdfText text = readBy(pdfOfPages({pdfStream("0 0 100 100 re f"), pdfStream({})}));
    EXPECT_EQ(text.text, std::nullopt);
    EXPECT_FALSE(text.isCut);
}

TEST(PdfText, thousandPagesAreReadInOrder)
{
    QList<QByteArray> contents;
    QStringList expected;
    for (int page = 0; page < 1000; ++page) {
        contents.append(pdfStream(pageContent("page " + QByteArray::number(page))));
        expected.append(u"page "_s + QString::number(page));
    }
    EXPECT_EQ(readBy(pdfOfPages(contents)).text, expected.join(u"\n\n"_s));
}

QByteArray deflated(const QByteArray &bytes)
{
    QByteArray out(static_cast<qsizetype>(compressBound(bytes.size())), '\0');
    uLongf size = out.size();
    compress2(reinterpret_cast<Bytef *>(out.data()), &size,
        reinterpret_cast<const Bytef *>(bytes.constData()), bytes.size(), 9);
    return out.left(static_cast<qsizetype>(size));
}

// Some gigabytes of content in some hundred kilobytes.
QByteArray bombContent(char filling)
{
    const QByteArray megabytes = deflated(QByteArray(100'000'000, filling));
    return pdfStream(deflated(megabytes.repeated(1)), "/Filter [/FlateDecode /FlateDecode]");
}

TEST(PdfText, compressionBombBringsNothingDownAndKeepsThePagesBeforeIt)
{
    for (const char filling : {' ', '(', '['}) {
        QList<QByteArray> contents{pdfStream(pageContent("before"))};
        contents += QList<QByteArray>(40, bombContent(filling));
        const PdfText text = readBy(pdfOfPages(contents), 2s);
        EXPECT_EQ(text.text, u"before"_s);
        EXPECT_TRUE(text.isCut);
    }
}

TEST(PdfText, treeOfPagesThatHoldsItselfEnds)
{
    const QByteArray catalogue = "<</Type /Catalog /Pages 2 0 R>>";
    for (const QByteArray &tree : {QByteArray("<</Type /Pages /Kids [2 0 R] /Count 5>>"),
             QByteArray("<</Type /Pages /Kids [3 0 R] /Count 5>>"),
             QByteArray("<</Type /Pages /Parent 2 0 R /Kids [2 0 R 3 0 R 2 0 R] /Count -1>>")}) {
        const QByteArray below = "<</Type /Pages /Parent 2 0 R /Kids [2 0 R] /Count 5>>";
        EXPECT_TRUE(endedInOrder(textOf(pdfOf({catalogue, tree, below}), 20s)));
    }
}

TEST(PdfText, documentThatClaimsPagesWithoutNumberEndsAtOnce)
{
    QByteArray pdf = pdfOfPages({pdfStream(pageContent("only"))});
    pdf.replace("/Count 1>>", "/Count 2000000000>>");
    const DocumentOutcome outcome = textOf(pdf, 20s);
    EXPECT_NE(outcome.end, DocumentEnd::CutByBound);
    EXPECT_LT(outcome.output.size(), 1'000'000);
    pdf.replace("/Count 2000000000>>", "/Count 5>>");
    EXPECT_EQ(readBy(pdf, 20s).text, u"only"_s);
}

TEST(PdfText, fontOfGarbageBringsNothingDown)
{
    QRandomGenerator random(11);
    QByteArray garbage(20'000, '\0');
    for (char &byte : garbage) {
        byte = static_cast<char>(random.bounded(256));
    }
    for (const QByteArray kind : {"FontFile", "FontFile2", "FontFile3"}) {
        const QByteArray font = "<</Type /Font /Subtype /TrueType /BaseFont /X /FontDescriptor "
                                "<</Type /FontDescriptor /FontName /X /Flags 4 /"
            + kind + " 6 0 R>> /ToUnicode 6 0 R>>";
        const QByteArray page = "<</Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents "
                                "5 0 R /Resources <</Font <</F 3 0 R>>>>>>";
        const QByteArray pdf = pdfOf(
            {"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [4 0 R] /Count 1>>", font,
                page, pdfStream(pageContent("read")), pdfStream(garbage, "/Subtype /Type1C")});
        EXPECT_EQ(textOf(pdf).end, DocumentEnd::Done);
    }
}

TEST(PdfText, contentThatDrawsItselfEnds)
{
    const QByteArray form = pdfStream("/X Do " + pageContent("round"),
        "/Type /XObject /Subtype /Form /BBox [0 0 9 9] /Resources <</XObject <</X 3 0 R>> /Font "
        "<</F <</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>>>>>");
    const QByteArray page = "<</Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 5 0 R "
                            "/Resources <</XObject <</X 3 0 R>>>>>>";
    const QByteArray pdf = pdfOf({"<</Type /Catalog /Pages 2 0 R>>",
        "<</Type /Pages /Kids [4 0 R] /Count 1>>", form, page, pdfStream("/X Do")});
    EXPECT_TRUE(endedInOrder(textOf(pdf, 20s)));
}

} // namespace
} // namespace velarc
