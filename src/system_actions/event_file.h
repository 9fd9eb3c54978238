#pragma once

// One calendar file that is being changed.
//
// Any thread; a plain value.

#include "system_actions/event_records.h"
#include "system_actions/ical_edit.h"

namespace velarc {

class EventFile
{
public:
    // None for a broken file. `name` is for events without a UID.
    [[nodiscard]] static std::optional<EventFile> read(
        QByteArrayView bytes, const QString &name, ZoneBook &zones);

    // Of components that were read already.
    [[nodiscard]] static EventFile of(IcalComponent file, const QString &name, ZoneBook &zones);

    [[nodiscard]] const std::vector<IcalSeries> &series() const { return m_series; }
    [[nodiscard]] const IcalSeries *find(const QString &uid) const;

    // Makes the occurrence of this file's series tell of `wanted`: itself, where it stands alone,
    // else by an override. Gives the component that tells of it now.
    const IcalComponent &change(const IcalSeries &series, const Occurrence &occurrence,
        const CalendarEvent &present, const CalendarEvent &wanted, const EditContext &context);

    // Takes the occurrence away. What stands alone goes whole, and so does a series whose last
    // occurrence it was.
    void remove(const IcalSeries &series, const Occurrence &occurrence, const EditContext &context);

    // Whether the file holds nothing any more but time zones.
    [[nodiscard]] bool isEmpty() const;

    [[nodiscard]] QByteArray bytes() const { return writeIcal(m_file); }

private:
    IcalComponent m_file;
    std::vector<IcalSeries> m_series;

    EventFile(IcalComponent file, std::vector<IcalSeries> series)
        : m_file(std::move(file)), m_series(std::move(series))
    {
    }

    template <typename Visit> void visitEvents(Visit visit);
    [[nodiscard]] IcalComponent &component(std::size_t number);
    void removeComponents(const std::vector<std::size_t> &numbers);
    const IcalComponent &insertBehind(std::size_t number, IcalComponent added);
};

} // namespace velarc
