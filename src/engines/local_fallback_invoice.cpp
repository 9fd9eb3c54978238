#include "engines/local_fallback_invoice.h"

#include "base/text.h"
#include "engines/text_pieces.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace velarc {

namespace {

// Each pattern's value is its second group.
constexpr char16_t kNumberPattern[] =
    uR"((?i)(invoice[\s_-]*number|invoice[\s_-]*#|inv[\s_-]*#?)\s*[:#]?\s*([A-Z0-9-]+))";
constexpr char16_t kTotalPattern[] =
    uR"((?i)(total|amount due)\s*[:$]?\s*([$]?\d[\d,]*(\.\d{2})?))";
constexpr char16_t kDueDatePattern[] = uR"((?i)(due date)\s*[:\-]?\s*([A-Za-z0-9,\-/ ]+))";
constexpr char16_t kInvoiceDatePattern[] =
    uR"((?i)(invoice date|date)\s*[:\-]?\s*([A-Za-z0-9,\-/ ]+))";
constexpr int32_t kValueGroup = 2;

// Long runs of white space take quadratic and cubic time, so a search is bounded. ICU counts in
// units of ten thousand steps, which take about a tenth of a millisecond. An ordinary text needs
// less than one unit for a thousand characters, one with columns of forty spaces less than four.
constexpr int32_t kLeastLimit = 2000;
constexpr qsizetype kCharactersPerUnit = 500;

int32_t searchLimit(QStringView input)
{
    return kLeastLimit + static_cast<int32_t>(input.size() / kCharactersPerUnit);
}

// The trimmed value of the first match; empty for none.
QStringView firstMatch(const char16_t *pattern, QStringView input)
{
    // The matcher keeps a reference to the text, which shares the input's buffer.
    const icu::UnicodeString text(false, input.utf16(), static_cast<int32_t>(input.size()));
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(icu::UnicodeString(pattern), text, 0, status);
    matcher.setTimeLimit(searchLimit(input), status);
    if (U_FAILURE(status) || !matcher.find(status) || U_FAILURE(status)) {
        return {};
    }
    const int32_t start = matcher.start(kValueGroup, status);
    const int32_t end = matcher.end(kValueGroup, status);
    return U_FAILURE(status) || start < 0 ? QStringView() : trimmed(input.mid(start, end - start));
}

// `value` as a JSON string that escapes backslashes and quotes only; null when it is empty.
QString written(QStringView value)
{
    if (value.isEmpty()) {
        return QStringLiteral("null");
    }
    QString text = QStringLiteral("\"");
    text.reserve(value.size() + 2);
    for (const QChar character : value) {
        if (character == u'\\' || character == u'"') {
            text.append(u'\\');
        }
        text.append(character);
    }
    return text.append(u'"');
}

} // namespace

QString localInvoice(QStringView input)
{
    const QStringView vendor = TextPieces(input, &isLineFeed).next().value_or(QStringView());
    QString invoice = QStringLiteral("{\n");
    const auto addField = [&invoice](QStringView key, QStringView value) {
        invoice.append(u"  \"").append(key).append(u"\": ").append(written(value)).append(u",\n");
    };
    addField(u"vendor_name", vendor);
    addField(u"invoice_number", firstMatch(kNumberPattern, input));
    addField(u"invoice_date", firstMatch(kInvoiceDatePattern, input));
    addField(u"due_date", firstMatch(kDueDatePattern, input));
    addField(u"currency", u"USD");
    addField(u"total_amount", firstMatch(kTotalPattern, input));
    return invoice.append(u"  \"tax_amount\": null,\n  \"line_items\": []\n}");
}

} // namespace velarc
