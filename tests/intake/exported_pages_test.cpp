// Exported pages as other programs read them: pdfinfo, pdffonts and pdftotext.

#include "document_helper.h"

#include "support/fixture.h"
#include "support/printers.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using ::testing::Each;

constexpr double kTolerance = 0.6; // points

// The reader lets the box of a word begin 0.73 of its size above the baseline.
constexpr double kFirstTop = 66 + (0.905 - 0.73) * 12;

struct Word
{
    QString text;
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// A row of pixels with ink on it, in points from the upper left corner.
struct InkRow
{
    double y = 0;
    double left = 0;
    double right = 0;
};

QList<InkRow> inkOf(const QByteArray &pgm)
{
    constexpr int kWidth = 4 * 612;
    const QByteArray head = "P5\n2448 3168\n255\n";
    EXPECT_TRUE(pgm.startsWith(head)) << pgm.left(30).toStdString();
    QList<InkRow> rows;
    for (int y = 0; y < 4 * 792; ++y) {
        const QByteArray row = pgm.mid(head.size() + qsizetype(y) * kWidth, kWidth);
        const auto isInk = [](char grey) { return static_cast<quint8>(grey) < 128; };
        const auto first = std::find_if(row.begin(), row.end(), isInk);
        if (first != row.end()) {
            const auto last = std::find_if(row.rbegin(), row.rend(), isInk);
            rows.append({y / 4.0, double(first - row.begin()) / 4,
                double(kWidth - (last - row.rbegin())) / 4});
        }
    }
    return rows;
}

// One exported document.
class Exported
{
public:
    explicit Exported(const QString &text, const QString &title = u"Heading"_s)
    {
        const DocumentOutcome outcome =
            converted({u"text-pdf"_s, u"--title"_s, title}, text.toUtf8());
        EXPECT_EQ(outcome.end, DocumentEnd::Done) << outcome.message.toStdString();
        m_pdf = outcome.output;
    }

    [[nodiscard]] QString info() const
    {
        return QString::fromUtf8(saidBy(u"pdfinfo"_s, {u"-"_s}, m_pdf));
    }
    [[nodiscard]] int pageCount() const
    {
        static const QRegularExpression pages(u"Pages: +(\\d+)"_s);
        return pages.match(info()).captured(1).toInt();
    }
    // A line for each.
    [[nodiscard]] QStringList fonts() const
    {
        QTemporaryDir folder; // this program reads no standard input
        QFile file(folder.filePath(u"a.pdf"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(m_pdf);
        file.close();
        return QString::fromUtf8(saidBy(u"pdffonts"_s, {file.fileName()}))
            .split(u'\n', Qt::SkipEmptyParts)
            .mid(2);
    }
    // Each page's text without its title, and without the marks that the reader puts around text
    // of the other direction.
    [[nodiscard]] QStringList bodies(const QString &title = u"Heading"_s) const
    {
        static const QRegularExpression marks(u"[\u200E\u200F\u202A-\u202E\u2066-\u2069]"_s);
        const QByteArray said = saidBy(u"pdftotext"_s, {u"-"_s, u"-"_s}, m_pdf);
        QStringList pages = QString::fromUtf8(said).remove(marks).split(u'\f');
        pages.removeLast();
        for (QString &page : pages) {
            EXPECT_TRUE(page.startsWith(title)) << page.left(80).toStdString();
            page = page.sliced(std::min(title.size(), page.size()));
        }
        return pages;
    }
    [[nodiscard]] QList<QList<Word>> words() const
    {
        static const QRegularExpression word(
            u"<word xMin=\"([^\"]+)\" yMin=\"([^\"]+)\" xMax=\"([^\"]+)\" yMax=\"([^\"]+)\">(.*)</word>"_s);
        const QString said =
            QString::fromUtf8(saidBy(u"pdftotext"_s, {u"-bbox"_s, u"-"_s, u"-"_s}, m_pdf));
        QList<QList<Word>> pages;
        for (const QString &line : said.split(u'\n')) {
            if (line.contains(u"<page "_s)) {
                pages.append(QList<Word>());
            } else if (const auto match = word.match(line); match.hasMatch()) {
                pages.last().append(
                    {match.captured(5), match.captured(1).toDouble(), match.captured(2).toDouble(),
                        match.captured(3).toDouble(), match.captured(4).toDouble()});
            }
        }
        return pages;
    }
    // The rows of each page, 4 a point, that hold any ink, as the columns from first to last.
    [[nodiscard]] QList<InkRow> ink(int page = 1) const
    {
        const QString number = QString::number(page);
        return inkOf(saidBy(u"pdftoppm"_s,
            {u"-gray"_s, u"-r"_s, u"288"_s, u"-f"_s, number, u"-l"_s, number, u"-"_s}, m_pdf));
    }
    [[nodiscard]] const QByteArray &bytes() const { return m_pdf; }

private:
    QByteArray m_pdf;
};

// Without white space, which is what laying out may add and take.
QString letters(const QString &text)
{
    static const QRegularExpression blanks(u"\\s+"_s);
    return QString(text).remove(blanks);
}

QString letters(const QStringList &pages)
{
    return letters(pages.join(QString()));
}

QString numberedLines(int count)
{
    QStringList lines;
    for (int line = 1; line <= count; ++line) {
        lines.append(u"line "_s + QString::number(line));
    }
    return lines.join(u'\n');
}

TEST(ExportedPages, everyPageIsALetter)
{
    const Exported pages(numberedLines(200));
    EXPECT_TRUE(pages.info().contains(u"612 x 792 pts (letter)"_s)) << pages.info().toStdString();
    EXPECT_EQ(pages.bytes().count("/MediaBox [ 0 0 612 792 ]"), pages.bytes().count("/MediaBox"));
}

TEST(ExportedPages, titleStandsInTheDocumentsInformation)
{
    EXPECT_TRUE(Exported(u"x"_s, u"Gr\u00FC\u00DFe \u4E2D"_s)
                    .info()
                    .contains(u"Title:           Gr\u00FC\u00DFe \u4E2D\n"_s));
}

// Letters without a curve stand on the baseline; the lower half of an L is wider than its upper
// one.
TEST(ExportedPages, titleStandsUprightOnEveryPageWithItsBaseline42PointsBelowTheTop)
{
    const Exported pages(u"\f\f"_s, u"L"_s);
    ASSERT_EQ(pages.pageCount(), 3);
    for (int page = 1; page <= 3; ++page) {
        const QList<InkRow> rows = pages.ink(page);
        ASSERT_FALSE(rows.isEmpty());
        EXPECT_NEAR(rows.last().y + 0.25, 42, 0.3);
        EXPECT_NEAR(rows.first().y, 42 - 0.72 * 13, 0.5);
        EXPECT_NEAR(rows.first().left, 41, 0.5);
        EXPECT_GT(rows.last().right, rows.first().right + 3);
    }
}

TEST(ExportedPages, firstLineOfTheBodyStandsUprightAtTheUpperEdgeOfItsRectangle)
{
    const QList<InkRow> rows = Exported(u"L"_s, u" "_s).ink();
    ASSERT_FALSE(rows.isEmpty());
    EXPECT_NEAR(rows.last().y + 0.25, 66 + 0.905 * 12, 0.3) << "its baseline";
    EXPECT_GT(rows.first().y, 66);
    EXPECT_GT(rows.last().right, rows.first().right + 3);
}

TEST(ExportedPages, everyPageIsHeadedByTheTitle)
{
    const auto pages = Exported(numberedLines(150)).words();
    ASSERT_EQ(pages.size(), 4);
    for (const QList<Word> &page : pages) {
        EXPECT_EQ(page.first().text, u"Heading"_s);
        EXPECT_NEAR(page.first().left, 40, kTolerance);
        EXPECT_NEAR(page.first().top, pages.first().first().top, kTolerance);
    }
}

TEST(ExportedPages, bodyFillsItsRectangleFromTheUpperEdge)
{
    const QString words = u"word "_s.repeated(3000);
    const auto pages = Exported(words).words();
    ASSERT_GE(pages.size(), 3);
    for (const QList<Word> &page : pages) {
        double left = 612, right = 0, bottom = 0;
        for (qsizetype at = 1; at < page.size(); ++at) {
            left = std::min(left, page[at].left);
            right = std::max(right, page[at].right);
            bottom = std::max(bottom, page[at].bottom);
        }
        EXPECT_NEAR(page[1].top, kFirstTop, kTolerance);
        EXPECT_NEAR(left, 40, kTolerance);
        EXPECT_LE(right, 572 + kTolerance);
        EXPECT_LE(bottom, 752 + kTolerance);
    }
    EXPECT_GT(pages.first().last().bottom, 752 - 13.8) << "a full page ends at its last line";
}

// Of the columns behind name and kind: embedded, a subset, with or without a table of letters.
auto isEmbedded()
{
    static const QRegularExpression columns(u" yes yes (yes|no ) +\\d+ +0$"_s);
    return ::testing::Truly([](const QString &font) { return font.contains(columns); });
}

TEST(ExportedPages, fontsAreEmbeddedAndHaveHelveticasMetrics)
{
    const Exported plain(u"plain"_s);
    EXPECT_EQ(plain.fonts().size(), 2) << plain.fonts().join(u'\n').toStdString();
    EXPECT_THAT(plain.fonts(), Each(isEmbedded()));
    // Widths of Helvetica at 12 points: m 0.833, i 0.222.
    const auto page = Exported(u"mmmmmmmmmm iiiiiiiiii"_s).words().first();
    EXPECT_NEAR(page[1].right - page[1].left, 10 * 0.833 * 12, kTolerance);
    EXPECT_NEAR(page[2].right - page[2].left, 10 * 0.222 * 12, kTolerance);
}

struct Sample
{
    const char *name;
    const char16_t *text;
};
constexpr std::array kSamples{
    Sample{"English", u"The \u201Cquick\u201D fox \u2013 office, fluffy, 50 %"},
    Sample{
        "German", u"Gr\u00FC\u00DFe, \u00E0 la fran\u00E7aise, \u0141\u00F3d\u017A, \u0159\u00E1d"},
    Sample{"Greek",
        u"\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 \u03BA\u03CC\u03C3\u03BC\u03B5"},
    Sample{"Russian", u"\u0414\u043E\u0431\u0440\u044B\u0439 \u0434\u0435\u043D\u044C"},
    Sample{"Chinese", u"\u6E2F\u53E3\u7684\u51AC\u5929\u5F88\u51B7"},
    Sample{"Japanese", u"\u6771\u4EAC\u306E\u51AC\u306F\u5BD2\u3044"},
    Sample{"Hebrew", u"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD"},
    Sample{"Arabic", u"\u0645\u0631\u062D\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645"},
    Sample{
        "Devanagari", u"\u0928\u092E\u0938\u094D\u0924\u0947 \u0926\u0941\u0928\u093F\u092F\u093E"},
    Sample{"Emoji", u"\U0001F600 \U0001F680 \u2764"},
    Sample{"Symbols", u"\u2192 \u2260 \u221E \u20AC \u2713"},
};

class EveryScript : public ::testing::TestWithParam<Sample>
{
};

INSTANTIATE_TEST_SUITE_P(ExportedPages, EveryScript, ::testing::ValuesIn(kSamples),
    [](const auto &sample) { return std::string(sample.param.name); });

TEST_P(EveryScript, isReadBackAsItWasWritten)
{
    const QString text = QString::fromUtf16(GetParam().text);
    const Exported body(text);
    EXPECT_EQ(letters(body.bodies()), letters(text));
    const QStringList fonts = body.fonts();
    EXPECT_GE(fonts.size(), 1);
    EXPECT_THAT(fonts, Each(isEmbedded()));
    EXPECT_EQ(letters(Exported(u"x"_s, text).bodies(QString())), letters(text) + u'x');
}

TEST(ExportedPages, rightToLeftParagraphsBeginAtTheRight)
{
    double hebrewLeft = 612, hebrewRight = 0, englishLeft = 612;
    for (const InkRow &row : Exported(u"\u05E9\u05DC\u05D5\u05DD\n\nleft"_s, u" "_s).ink()) {
        const bool isHebrew = row.y < 85;
        hebrewLeft = isHebrew ? std::min(hebrewLeft, row.left) : hebrewLeft;
        hebrewRight = isHebrew ? std::max(hebrewRight, row.right) : hebrewRight;
        englishLeft = isHebrew ? englishLeft : std::min(englishLeft, row.left);
    }
    EXPECT_NEAR(hebrewRight, 571, 1);
    EXPECT_GT(hebrewLeft, 530);
    EXPECT_NEAR(englishLeft, 41, 1);
}

TEST(ExportedPages, lineOfTenThousandCharactersIsWrappedWithoutLoss)
{
    const QString words = u"seven by "_s.repeated(1'200);
    EXPECT_EQ(letters(Exported(words).bodies()), letters(words));
    QString digits;
    for (int at = 0; digits.size() < 10'000; ++at) {
        digits += QString::number(at);
    }
    const Exported pages(digits);
    EXPECT_EQ(letters(pages.bodies()), digits) << "no blank to break at";
    for (const QList<Word> &page : pages.words()) {
        for (const Word &word : page) {
            EXPECT_LE(word.right, 572 + kTolerance);
        }
    }
}

TEST(ExportedPages, longChineseAndArabicParagraphsLoseNothing)
{
    QString chinese;
    for (char16_t at = 0x4E00; chinese.size() < 5'000; ++at) {
        chinese += QChar(at);
    }
    EXPECT_EQ(letters(Exported(chinese).bodies()), chinese);
    const QString arabic = u"\u0645\u0631\u062D\u0628\u0627 "_s.repeated(2'000);
    EXPECT_EQ(letters(Exported(arabic).bodies()), letters(arabic));
}

// A thousand bytes of them fill no line, and their own bytes do not end where the thousand do.
TEST(ExportedPages, charactersWithoutWidthStayWhole)
{
    for (const QString &mark : {u"\u0301"_s, u"\u200B"_s, u"\U000E0101"_s}) {
        const QString said = letters(Exported(u"be"_s + mark.repeated(2'000) + u"hind"_s).bodies());
        EXPECT_FALSE(said.contains(QChar(QChar::ReplacementCharacter))) << said.toStdString();
        EXPECT_TRUE(said.startsWith(u"b"_s) && said.endsWith(u"hind"_s)) << said.toStdString();
    }
}

TEST(ExportedPages, anyEndOfLineIsOneLineEnd)
{
    const auto page = Exported(u"a\r\nb\rc\nd\u2028e\u2029f\vg\u0085h"_s).words().first();
    ASSERT_EQ(page.size(), 9);
    for (qsizetype at = 1; at < page.size(); ++at) {
        EXPECT_NEAR(page[at].top, kFirstTop + 13.8 * double(at - 1), kTolerance);
    }
}

TEST(ExportedPages, blankLinesAroundATextStay)
{
    const auto page = Exported(u"\n\n  middle\n\n\nend\n\n"_s).words().first();
    ASSERT_EQ(page.size(), 3);
    EXPECT_NEAR(page[1].top, kFirstTop + 2 * 13.8, kTolerance);
    EXPECT_GT(page[1].left, 44) << "indented";
    EXPECT_NEAR(page[2].top, kFirstTop + 5 * 13.8, kTolerance);
}

TEST(ExportedPages, formFeedStartsAPage)
{
    EXPECT_EQ(Exported(u"one\ftwo\f\ffour"_s).pageCount(), 4);
}

TEST(ExportedPages, tabsSetWordsApartInColumns)
{
    const auto page = Exported(u"a\tb\nabc\tb"_s).words().first();
    ASSERT_EQ(page.size(), 5);
    EXPECT_GT(page[2].left, page[1].right + 5);
    EXPECT_NEAR(page[2].left, page[4].left, kTolerance);
}

TEST(ExportedPages, otherControlCharactersFallAway)
{
    QString text = u"be"_s;
    for (char16_t control = 0; control < 0x20; ++control) {
        if (control < 9 || control > 13) {
            text += QChar(control);
        }
    }
    text += u"tween\u007F\u009F"_s;
    EXPECT_EQ(letters(Exported(text).bodies()), u"between"_s);
}

TEST(ExportedPages, markupStandsAsItIsWritten)
{
    const QString text = u"# Head **bold** <b>&amp;</b> `code` [link](http://x)"_s;
    EXPECT_EQ(letters(Exported(text).bodies()), letters(text));
}

TEST(ExportedPages, longTitleIsNeitherWrappedNorCut)
{
    const QString title = u"very long title "_s.repeated(20).trimmed();
    const Exported pages(u"body"_s, title);
    EXPECT_EQ(pages.pageCount(), 1);
    const auto words = pages.words().first(); // those that are on the page
    for (qsizetype at = 0; at + 1 < words.size(); ++at) {
        EXPECT_NEAR(words[at].top, words[0].top, kTolerance);
    }
    EXPECT_GT(words[words.size() - 2].right, 572) << "it runs on to the edge of the page";
    EXPECT_EQ(words.last().text, u"body"_s);
    EXPECT_NEAR(words.last().top, kFirstTop, kTolerance);
    EXPECT_TRUE(pages.info().contains(title));
}

TEST(ExportedPages, titleOfSeveralLinesStandsInOne)
{
    const auto words = Exported(u"body"_s, u"one\ntwo\tthree"_s).words().first();
    ASSERT_EQ(words.size(), 4);
    EXPECT_NEAR(words[2].top, words[0].top, kTolerance);
}

TEST(ExportedPages, titleWithoutALetterLeavesItsRoom)
{
    const auto words = Exported(u"body"_s, u"\u200B"_s).words().first();
    EXPECT_NEAR(words.last().top, kFirstTop, kTolerance);
}

TEST(ExportedPages, invalidTextIsShownAsFarAsItIsValid)
{
    const DocumentOutcome outcome = converted(
        {u"text-pdf"_s, u"--title"_s, u"T"_s}, QByteArray("good \xff\xc3 bytes\xed\xa0\x80"));
    ASSERT_EQ(outcome.end, DocumentEnd::Done);
    const QString said =
        QString::fromUtf8(saidBy(u"pdftotext"_s, {u"-"_s, u"-"_s}, outcome.output));
    EXPECT_TRUE(said.contains(u"good"_s) && said.contains(u"bytes"_s));
}

TEST(ExportedPages, codesThatAreNoCharactersAreReplaced)
{
    const QString text = u"a\uFDD0b\uFDEFc\uFFFEd\U0001FFFFe"_s;
    const QString said = letters(Exported(text, u"T\uFDD0"_s).bodies(u"T"_s));
    EXPECT_TRUE(said.endsWith(u"a\uFFFDb\uFFFDc\uFFFDd\uFFFDe"_s)) << said.toStdString();
}

// Of every script, mark and picture, in any order: no two fit together, and none is in every font.
TEST(ExportedPages, anyCharactersAtAllMakePages)
{
    QRandomGenerator random(5);
    for (int round = 0; round < 30; ++round) {
        QString text;
        for (int at = 0; at < 400; ++at) {
            const char32_t code = random.bounded(4) == 0 ? random.bounded(0x1F000U, 0x20000U)
                                                         : random.bounded(0x20U, 0xD800U);
            text += QString::fromUcs4(&code, 1);
        }
        EXPECT_EQ(Exported(text, text.left(20)).pageCount(), 1) << round;
    }
}

TEST(ExportedPages, equalTextsGiveEqualBytes)
{
    const QString text = u"Equal \u4E2D \u05E9\u05DC\u05D5\u05DD"_s;
    EXPECT_EQ(Exported(text).bytes(), Exported(text).bytes());
}

TEST(ExportedPages, tenMegabytesComeWholeAndInOrder)
{
    QString text;
    text.reserve(10'500'000);
    for (int line = 0; text.size() < 10'000'000; ++line) {
        text += u"Line %1 of a long text that fills most of the width of its page.\n"_s.arg(line);
    }
    EXPECT_EQ(letters(Exported(text).bodies()), letters(text));
}

} // namespace
} // namespace velarc
