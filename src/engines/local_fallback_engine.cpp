#include "engines/local_fallback_engine.h"

#include "base/text.h"
#include "engines/local_fallback_invoice.h"
#include "engines/local_fallback_templates.h"
#include "engines/local_fallback_texts.h"
#include "engines/text_pieces.h"

#include <QStringMatcher>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <limits>

namespace velarc {

namespace {

using namespace local_fallback;

constexpr int kMostSentenceWords = 24;
constexpr int kMostKeyPoints = 5;
constexpr int kMostActionItems = 5;
constexpr qsizetype kMostTitleCharacters = 72;

constexpr QStringView kDiffMark = u"diff --git";
constexpr QStringView kDiffMarkReplacement = u"Refactor";

enum class Kind
{
    OneSentence,
    Brainstorm,
    MealPlan,
    KeyPoints,
    MergeRequest,
    WeeklyPlan,
    Joke,
    Invoice,
    ActionItems,
    EmailReply,
    LineTable,
    VisualConcept,
    Default
};

struct Keyword
{
    QStringView text;
    Kind kind;
};

// In rank: the first one that a name holds decides.
constexpr std::array kKeywords{
    Keyword{u"one-sentence", Kind::OneSentence},
    Keyword{u"one sentence", Kind::OneSentence},
    Keyword{u"brainstorm", Kind::Brainstorm},
    Keyword{u"meal", Kind::MealPlan},
    Keyword{u"recipe", Kind::MealPlan},
    Keyword{u"summar", Kind::KeyPoints},
    Keyword{u"git", Kind::MergeRequest},
    Keyword{u"planning", Kind::WeeklyPlan},
    Keyword{u"advice", Kind::WeeklyPlan},
    Keyword{u"joke", Kind::Joke},
    Keyword{u"invoice", Kind::Invoice},
    Keyword{u"meeting", Kind::ActionItems},
    Keyword{u"tasks", Kind::ActionItems},
    Keyword{u"email", Kind::EmailReply},
    Keyword{u"translat", Kind::LineTable},
    Keyword{u"icon", Kind::VisualConcept},
    Keyword{u"artist", Kind::VisualConcept},
};

Kind kindFor(QStringView name)
{
    const QString folded = foldedToLower(name);
    const auto *hit = std::find_if(kKeywords.begin(), kKeywords.end(),
        [&folded](const Keyword &keyword) { return folded.contains(keyword.text); });
    return hit == kKeywords.end() ? Kind::Default : hit->kind;
}

QString concatenated(std::initializer_list<QStringView> parts)
{
    qsizetype size = 0;
    for (const QStringView part : parts) {
        size += part.size();
    }
    QString whole;
    whole.reserve(size);
    for (const QStringView part : parts) {
        whole.append(part);
    }
    return whole;
}

QStringView presentOr(QStringView phrase, QStringView input)
{
    const QStringView value = trimmed(input);
    return value.isEmpty() ? phrase : value;
}

QString filled(const FixedTemplate &text, QStringView input)
{
    return concatenated({text.prefix, presentOr(text.phrase, input), text.suffix});
}

QString visualConcept(QStringView input)
{
    const QStringView value = presentOr(kVisualConcept.phrase, input);
    return concatenated(
        {kVisualConcept.opening, value, kVisualConcept.notes, value, kVisualConcept.ending});
}

QString preview(QStringView name, QStringView input)
{
    return concatenated({kPreviewHeader, name, u"\n\n", presentOr(kNoInput, input)});
}

QString oneSentence(QStringView input)
{
    const auto isSpace = [](QChar character) { return character == u' ' || isLineFeed(character); };
    QStringView rest = TextPieces(input, &endsSentence).next().value_or(kNothingToSummarize);
    QString sentence;
    for (int words = 0; words < kMostSentenceWords && !rest.isEmpty(); ++words) {
        const auto end = std::find_if(rest.begin(), rest.end(), isSpace);
        const auto next = std::find_if_not(end, rest.end(), isSpace);
        sentence.append(sentence.isEmpty() ? QStringView() : QStringView(u" "))
            .append(rest.left(end - rest.begin()));
        rest = rest.mid(next - rest.begin());
    }
    return sentence.append(u'.');
}

QString keyPoints(QStringView input)
{
    TextPieces sentences(input, &endsSentence);
    QString points;
    for (int count = 0; count < kMostKeyPoints; ++count) {
        const auto sentence = sentences.next();
        if (!sentence) {
            break;
        }
        points.append(points.isEmpty() ? QStringView(u"- ") : QStringView(u"\n- "));
        const qsizetype start = points.size();
        points.append(*sentence);
        std::replace(points.begin() + start, points.end(), QChar(u'\n'), QChar(u' '));
    }
    return points.isEmpty() ? kKeyPoints.empty.toString()
                            : concatenated({kKeyPoints.prefix, points, kKeyPoints.suffix});
}

// In place, QString would move the tail of a long line once for every thousand hits.
QString withoutDiffMarks(QStringView line)
{
    const QStringMatcher mark(kDiffMark);
    QString plain;
    plain.reserve(line.size());
    qsizetype start = 0;
    for (qsizetype hit = mark.indexIn(line); hit >= 0; hit = mark.indexIn(line, start)) {
        plain.append(line.mid(start, hit - start)).append(kDiffMarkReplacement);
        start = hit + kDiffMark.size();
    }
    return plain.append(line.mid(start));
}

QString mergeRequest(QStringView input)
{
    const QString line =
        withoutDiffMarks(TextPieces(input, &isLineFeed).next().value_or(kMergeRequest.phrase));
    const QStringView title = characterPrefix(line, kMostTitleCharacters);
    return concatenated({kMergeRequest.prefix, title, kMergeRequest.suffix});
}

QString actionItems(QStringView input)
{
    TextPieces lines(input, &isLineFeed);
    QString tasks;
    for (int number = 1; number <= kMostActionItems; ++number) {
        const auto line = lines.next();
        if (!line) {
            break;
        }
        tasks.append(number == 1 ? QStringView(u"- [ ] Task ") : QStringView(u"\n- [ ] Task "));
        tasks.append(QString::number(number)).append(u": ").append(*line);
    }
    const QStringView list = tasks.isEmpty() ? kActionItems.empty : QStringView(tasks);
    return concatenated({kActionItems.prefix, list, kActionItems.suffix});
}

// Only quotes are escaped here; a backslash stays as it is.
void appendWithEscapedQuotes(QString &text, QStringView line)
{
    for (qsizetype quote = line.indexOf(u'"'); quote >= 0; quote = line.indexOf(u'"')) {
        text.append(line.left(quote)).append(u"\\\"");
        line = line.mid(quote + 1);
    }
    text.append(line);
}

// What stands between a number and its line. A table of short lines is mostly this: it is written
// in one piece and without an allocation.
void appendKeyEnd(QString &table, qsizetype number)
{
    constexpr QStringView kMark = u"\": \"";
    std::array<char16_t, std::numeric_limits<qsizetype>::digits10 + 1 + kMark.size()> text{};
    auto front = std::copy_backward(kMark.utf16(), kMark.utf16() + kMark.size(), text.end());
    for (qsizetype rest = number; rest > 0; rest /= 10) {
        *--front = static_cast<char16_t>(u'0' + rest % 10);
    }
    table.append(QStringView(front, text.end()));
}

QString lineTable(QStringView input)
{
    TextPieces lines(input, &isLineFeed);
    QString table;
    table.reserve(input.size());
    qsizetype number = 0;
    while (const auto line = lines.next()) {
        table.append(number == 0 ? QStringView(u"{\n  \"text_") : QStringView(u"\",\n  \"text_"));
        appendKeyEnd(table, ++number);
        appendWithEscapedQuotes(table, *line);
    }
    return number == 0 ? kEmptyLineTable.toString() : table.append(u"\"\n}");
}

} // namespace

QString LocalFallbackEngine::generate(const AIAction &action, QStringView input)
{
    switch (kindFor(action.name)) {
    case Kind::OneSentence:
        return oneSentence(input);
    case Kind::Brainstorm:
        return filled(kBrainstorm, input);
    case Kind::MealPlan:
        return filled(kMealPlan, input);
    case Kind::KeyPoints:
        return keyPoints(input);
    case Kind::MergeRequest:
        return mergeRequest(input);
    case Kind::WeeklyPlan:
        return filled(kWeeklyPlan, input);
    case Kind::Joke:
        return filled(kJoke, input);
    case Kind::Invoice:
        return localInvoice(input);
    case Kind::ActionItems:
        return actionItems(input);
    case Kind::EmailReply:
        return filled(kEmailReply, input);
    case Kind::LineTable:
        return lineTable(input);
    case Kind::VisualConcept:
        return visualConcept(input);
    case Kind::Default:
        return preview(action.name, input);
    }
    Q_UNREACHABLE();
}

} // namespace velarc
