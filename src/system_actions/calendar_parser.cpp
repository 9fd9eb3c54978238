#include "system_actions/calendar_parser.h"

#include "base/text.h"
#include "system_actions/calendar_date.h"

#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using KeyValues = QHash<QString, QString>;

constexpr int kDecimal = 10;

std::optional<QString> valueOf(const KeyValues &values, const QString &key)
{
    const auto found = values.constFind(key);
    return found == values.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<QString> valueOf(const KeyValues &values, const QString &key, const QString &otherKey)
{
    auto value = valueOf(values, key);
    return value ? value : valueOf(values, otherKey);
}

bool isAsciiDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

// An optional sign, then digits to the end; QString would also pass over blanks.
std::optional<qint64> wholeNumber(const std::optional<QString> &value)
{
    if (!value) {
        return std::nullopt;
    }
    QStringView digits = *value;
    if (digits.startsWith(u'+') || digits.startsWith(u'-')) {
        digits = digits.mid(1);
    }
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), &isAsciiDigit)) {
        return std::nullopt;
    }
    bool fits = false;
    const qint64 number = value->toLongLong(&fits, kDecimal);
    return fits ? std::optional(number) : std::nullopt;
}

std::optional<QString> freeFirstLine(QStringView text)
{
    const QList<QStringView> lines = splitLines(text);
    const QStringView line = lines.isEmpty() ? QStringView() : trimmed(lines.first());
    if (line.isEmpty() || line.contains(u':')) {
        return std::nullopt;
    }
    return line.toString();
}

// The character at `index`, which takes two units when it lies beyond the first plane.
char32_t codePointAt(QStringView text, qsizetype index)
{
    const QChar unit = text[index];
    if (unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate()) {
        return QChar::surrogateToUcs4(unit, text[index + 1]);
    }
    return unit.unicode();
}

bool isDigit(char32_t character)
{
    return QChar::category(character) == QChar::Number_DecimalDigit;
}

} // namespace

KeyValues parseCalendarKeyValues(QStringView text)
{
    KeyValues values;
    for (const QStringView line : splitLines(text)) {
        const qsizetype colon = line.indexOf(u':');
        if (colon < 0) {
            continue;
        }
        const QStringView key = trimmed(line.left(colon));
        const QStringView value = trimmed(line.mid(colon + 1));
        if (!key.isEmpty() && !value.isEmpty()) {
            values.insert(foldedToLower(key), value.toString());
        }
    }
    return values;
}

std::optional<QString> firstNumberInText(QStringView text)
{
    constexpr qint64 kLargest = std::numeric_limits<qint64>::max();
    std::optional<qint64> number;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const char32_t character = codePointAt(text, index);
        index += QChar::requiresSurrogates(character) ? 1 : 0;
        if (isDigit(character)) {
            const int digit = QChar::digitValue(character);
            const bool fits = number.value_or(0) <= (kLargest - digit) / kDecimal;
            number = fits ? number.value_or(0) * kDecimal + digit : kLargest;
        } else if (number) {
            break;
        }
    }
    return number ? std::optional(QString::number(*number)) : std::nullopt;
}

std::optional<Instant> parseCalendarDate(const std::optional<QString> &value)
{
    if (!value || isBlank(*value)) {
        return std::nullopt;
    }
    const auto instant = internetDate(*value);
    return instant ? instant : writtenDate(*value);
}

ParsedCalendarInput parseCalendarInput(QStringView text)
{
    const KeyValues values = parseCalendarKeyValues(text);
    ParsedCalendarInput input;
    input.title = valueOf(values, u"title"_s);
    input.startDate = parseCalendarDate(valueOf(values, u"start"_s, u"startdate"_s));
    input.endDate = parseCalendarDate(valueOf(values, u"end"_s, u"enddate"_s));
    input.location = valueOf(values, u"location"_s);
    input.notes = valueOf(values, u"notes"_s, u"body"_s);
    input.calendarName = valueOf(values, u"calendar"_s);
    input.eventID = valueOf(values, u"eventid"_s, u"id"_s);
    const auto limit = valueOf(values, u"limit"_s);
    input.limit = wholeNumber(limit ? limit : firstNumberInText(text));
    input.days = wholeNumber(valueOf(values, u"days"_s));
    if (!input.title) {
        input.title = freeFirstLine(text);
    }
    return input;
}

} // namespace velarc
