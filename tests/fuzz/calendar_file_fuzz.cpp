#include "fuzz_target.h"

#include "system_actions/event_file.h"
#include "system_actions/event_records.h"

using namespace velarc;

namespace {

const ZonePointer &zone()
{
    static const ZonePointer kZone = databaseZone("Europe/Berlin");
    return kZone;
}

EditContext context()
{
    return {zone(), UtcTime(std::chrono::seconds(1'750'000'000))};
}

// A file that is read is written as it was, and what was written is read again.
void checkBytes(const QByteArray &bytes)
{
    if (const auto file = readIcal(bytes)) {
        promise(writeIcal(*file) == bytes);
    }
}

void checkRecord(const CalendarEvent &record)
{
    promise(record.endDate >= record.startDate - std::chrono::seconds(1));
    promise(!readingsOf(record.identifier).isEmpty());
}

// Each change leaves a file that is read, with the change in it.
void checkChanges(const QByteArray &bytes, const QString &uid, const Occurrence &occurrence)
{
    ZoneBook zones;
    auto file = EventFile::read(bytes, QString(), zones);
    const IcalSeries *series = file->find(uid);
    const auto found = occurrenceOf(*series, occurrence.due, *zone(), {});
    if (!found) {
        return; // another series of the same name comes first
    }
    const CalendarEvent present = recordOf(*series, *found, QString());
    CalendarEvent wanted = present;
    wanted.title += u'x';
    wanted.startDate += std::chrono::hours(1);
    wanted.endDate += std::chrono::hours(2);
    static_cast<void>(file->change(*series, *found, present, wanted, context()));
    promise(EventFile::read(file->bytes(), QString(), zones).has_value());

    auto other = EventFile::read(bytes, QString(), zones);
    const IcalSeries *rest = other->find(uid);
    other->remove(*rest, *occurrenceOf(*rest, occurrence.due, *zone(), {}), context());
    promise(other->isEmpty() || readIcal(other->bytes()).has_value());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    checkBytes(bytes);
    ZoneBook zones;
    const auto file = EventFile::read(bytes, QString(), zones);
    if (!file) {
        return 0;
    }
    constexpr UtcWindow kWindow{
        UtcTime(std::chrono::seconds(1'735'689'600)), UtcTime(std::chrono::seconds(1'767'225'600))};
    for (const IcalSeries &series : file->series()) {
        constexpr ExpansionBounds kFew{2'000, 20};
        const auto found = occurrencesIn(series, kWindow, *zone(), kFew, {});
        for (const Occurrence &occurrence : found) {
            checkRecord(recordOf(series, occurrence, QString()));
        }
        if (!found.empty()) {
            checkChanges(bytes, series.uid, found.front());
        }
    }
    return 0;
}
