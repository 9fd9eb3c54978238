#pragma once

// Calendars in a folder: in it a folder for each calendar, and in that a file for each event. Other
// programs that keep calendars in this way can read and write them as well.

#include "system_actions/calendar_backend.h"
#include "system_actions/calendar_folder.h"
#include "system_actions/event_records.h"
#include "system_actions/ical_edit.h"

#include <map>

namespace velarc {

// Where the user's calendars are: in the folder for data.
[[nodiscard]] QString calendarsFolder();

// What the files of one calendar tell. A file is read again when it has changed.
class FolderIndex
{
public:
    struct File
    {
        FileStamp stamp;
        bool isCertain = false; // no: it may have changed since without telling
        std::vector<IcalSeries> series;
        quint64 round = 0; // in which it was seen last
    };
    using Files = std::map<QByteArray, File>;

    // Broken files are there without events. Stop: CancellationError.
    const Files &refresh(
        const CalendarFolder &folder, ZoneBook &zones, const std::stop_token &stop);

    // The same for one file; nullptr if there is none of that name.
    const File *refresh(const CalendarFolder &folder, const QByteArray &name, ZoneBook &zones);

private:
    Files m_files;
    quint64 m_round = 0;

    File &read(const CalendarFolder &folder, const CalendarFolder::Entry &entry, ZoneBook &zones);
};

// A calendar's identifier is the name of its folder.
class VdirCalendars final : public CalendarBackend
{
public:
    explicit VdirCalendars(QString root);

    [[nodiscard]] bool requestAccess(std::stop_token stop) override;

    // By title. The first use makes the first calendar, "Personal".
    [[nodiscard]] QList<CalendarInfo> calendars(std::stop_token stop) override;

    // "Personal", else the first that can be written.
    [[nodiscard]] std::optional<CalendarInfo> defaultCalendar(std::stop_token stop) override;

    [[nodiscard]] QList<CalendarEvent> events(CalendarWindow window, std::stop_token stop) override;
    [[nodiscard]] std::optional<CalendarEvent> event(
        const QString &identifier, std::stop_token stop) override;
    [[nodiscard]] CalendarEvent save(const CalendarEvent &event, std::stop_token stop) override;

    // A file without any event left in it is removed.
    void remove(const CalendarEvent &event, std::stop_token stop) override;

private:
    struct Place
    {
        QByteArray folder;
        QByteArray file;
        EventReference reference;
    };

    QString m_root;
    ZoneBook m_zones;
    std::map<QByteArray, FolderIndex> m_indexes;

    [[nodiscard]] CalendarEvent create(const CalendarEvent &event);
    [[nodiscard]] std::optional<Place> placeOf(const std::vector<QByteArray> &folders,
        const QString &identifier, const std::stop_token &stop);
    [[nodiscard]] std::optional<Place> likelyPlaceIn(
        const QByteArray &folder, const EventReference &reference, const std::stop_token &stop);
    [[nodiscard]] std::optional<Place> placeIn(
        const QByteArray &folder, const EventReference &reference, const std::stop_token &stop);
    [[nodiscard]] std::optional<CalendarEvent> recordAt(
        const Place &place, const std::stop_token &stop);
    template <typename Edit>
    void edit(const CalendarEvent &event, const std::stop_token &stop, Edit change);
};

} // namespace velarc
