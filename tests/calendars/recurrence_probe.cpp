// Expands what stands on its standard input and prints what comes of it, for comparison with
// another program's expansion. A line in holds, between bars, the first and the last moment of
// interest, the zone ("" for floating, "DATE" for days), the start and the rule; a line out the
// starts in UTC.

#include "system_actions/recurrence.h"

#include <QList>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

using namespace velarc;

UtcTime momentOf(const QByteArray &text, ZoneBook &zones)
{
    const auto time = timeOfIcal(text, std::nullopt, zones);
    return time ? time->utc(*utcZone()) : UtcTime();
}

QByteArray eventText(const QList<QByteArray> &fields)
{
    QByteArray start = "DTSTART;TZID=" + fields[2] + ':';
    if (fields[2].isEmpty()) {
        start = "DTSTART:";
    } else if (fields[2] == "DATE") {
        start = "DTSTART;VALUE=DATE:";
    }
    return "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:a\r\n" + start + fields[3]
        + "\r\nRRULE:" + fields[4] + "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

QByteArray expanded(const QList<QByteArray> &fields)
{
    ZoneBook zones;
    const auto file = readIcal(eventText(fields));
    const auto series = seriesOfIcal(*file, QString(), zones);
    if (series.empty() || series.front().master->rules.empty()) {
        return "unreadable";
    }
    const auto found = occurrencesIn(series.front(),
        {momentOf(fields[0], zones), momentOf(fields[1], zones)}, *systemZone(), {}, {});
    QList<QByteArray> starts;
    for (const Occurrence &occurrence : found) {
        starts.append(icalOfUtc(occurrence.start));
    }
    std::sort(starts.begin(), starts.end());
    return starts.join(' ');
}

} // namespace

int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        const QList<QByteArray> fields = QByteArray::fromStdString(line).split('|');
        if (fields.size() != 5) {
            return 2;
        }
        std::puts(expanded(fields).constData());
    }
    return 0;
}
