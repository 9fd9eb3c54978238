#include "fuzz_target.h"

#include "base/text.h"
#include "system_actions/calendar_parser.h"

using namespace velarc;

namespace {

void checkKeyValues(const QString &text)
{
    const QHash<QString, QString> values = parseCalendarKeyValues(text);
    for (auto pair = values.begin(); pair != values.end(); ++pair) {
        promise(!pair.key().isEmpty() && !pair.value().isEmpty());
        promise(trimmed(pair.value()).size() == pair.value().size());
        promise(!pair.key().contains(u':'));
    }
}

void checkNumber(const QString &text)
{
    if (const auto number = firstNumberInText(text)) {
        bool fits = false;
        promise(number->toLongLong(&fits) >= 0 && fits);
    }
}

void checkFields(const QString &text)
{
    const ParsedCalendarInput input = parseCalendarInput(text);
    promise(input == parseCalendarInput(text));
    for (const auto &field :
        {input.title, input.location, input.notes, input.calendarName, input.eventID}) {
        promise(!field || !isBlank(*field));
    }
}

// A date is taken whole: nothing may stand in front of it or behind it.
void checkDate(const QString &text)
{
    if (parseCalendarDate(text)) {
        promise(!parseCalendarDate(text + u' ') && !parseCalendarDate(u' ' + text));
        promise(!parseCalendarDate(text + u'x') && !parseCalendarDate(text + text));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fuzzedText(data, size);
    checkKeyValues(text);
    checkNumber(text);
    checkFields(text);
    checkDate(text);
    return 0;
}
