#pragma once

// Series from the lines of their events, for tests of what follows from them.

#include "support/printers.h"
#include "system_actions/recurrence.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velarc {

// The series of the first UID in a calendar of these components.
[[nodiscard]] inline IcalSeries seriesOf(const QByteArray &components)
{
    ZoneBook zones;
    const auto file = readIcal("BEGIN:VCALENDAR\r\n" + components + "END:VCALENDAR\r\n");
    EXPECT_TRUE(file);
    auto series = file ? seriesOfIcal(*file, QString(), zones) : std::vector<IcalSeries>();
    EXPECT_FALSE(series.empty());
    return series.empty() ? IcalSeries() : std::move(series.front());
}

[[nodiscard]] inline QByteArray event(const QByteArray &lines)
{
    return "BEGIN:VEVENT\r\nUID:a\r\n" + lines + "END:VEVENT\r\n";
}

// "20250310T130000Z".
[[nodiscard]] inline UtcTime moment(const QByteArray &text)
{
    ZoneBook zones;
    return timeOfIcal(text, std::nullopt, zones).value().utc(*utcZone());
}

// In the system's zone of New York, in order; `ends` tells when each of them ends as well.
enum class Tell
{
    Starts,
    Ends,
    Lengths,
};
[[nodiscard]] inline QByteArray occurrencesOf(const IcalSeries &series, const QByteArray &from,
    const QByteArray &to, Tell tell = Tell::Starts)
{
    std::vector<Occurrence> found = occurrencesIn(
        series, {moment(from), moment(to)}, *databaseZone("America/New_York"), {}, {});
    std::sort(found.begin(), found.end(),
        [](const Occurrence &left, const Occurrence &right) { return left.start < right.start; });
    QList<QByteArray> texts;
    for (const Occurrence &occurrence : found) {
        texts.append(tell == Tell::Starts ? icalOfUtc(occurrence.start)
                : tell == Tell::Ends      ? icalOfUtc(occurrence.end)
                                     : QByteArray::number(std::chrono::floor<std::chrono::minutes>(
                                         occurrence.end - occurrence.start)
                                                              .count()));
    }
    return texts.join(' ');
}

} // namespace velarc
