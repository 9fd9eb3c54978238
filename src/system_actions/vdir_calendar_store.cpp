#include "system_actions/vdir_calendar_store.h"

#include "base/async.h"
#include "base/locale_text.h"
#include "base/uuid.h"
#include "store/private_files.h"
#include "system_actions/event_file.h"

#include <QFile>
#include <QStandardPaths>

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kFirstCalendar = "Personal";

// As long as another program of this kind may write.
constexpr std::chrono::seconds kPatience(5);

CalendarInfo infoOf(const QString &root, const QByteArray &name)
{
    const QString identifier = QFile::decodeName(name);
    try {
        const CalendarFolder folder(root, name);
        return {identifier, folder.title(), folder.isWritable()};
    } catch (const CalendarStoreError &) {
        return {identifier, identifier, false}; // whoever uses it is told why it fails
    }
}

bool isFirstCalendar(const CalendarInfo &calendar)
{
    return calendar.identifier == QLatin1StringView(kFirstCalendar);
}

// A file name that a UID of another program may have been given as it is.
QByteArray likelyFileName(const QString &uid)
{
    constexpr qsizetype kLongestName = 255;
    const QByteArray name = QFile::encodeName(uid) + ".ics";
    return name.size() <= kLongestName ? name : QByteArray();
}

bool holds(const FolderIndex::File &file, const QString &uid)
{
    return std::any_of(file.series.begin(), file.series.end(),
        [&](const IcalSeries &series) { return series.uid == uid; });
}

} // namespace

QString calendarsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + u"/velarc/calendars"_s;
}

const FolderIndex::Files &FolderIndex::refresh(
    const CalendarFolder &folder, ZoneBook &zones, const std::stop_token &stop)
{
    ++m_round;
    for (const CalendarFolder::Entry &entry : folder.files()) {
        throwIfStopped(stop);
        read(folder, entry, zones).round = m_round;
    }
    std::erase_if(m_files, [&](const auto &file) { return file.second.round != m_round; });
    return m_files;
}

const FolderIndex::File *FolderIndex::refresh(
    const CalendarFolder &folder, const QByteArray &name, ZoneBook &zones)
{
    const auto entry = folder.file(name);
    if (!entry) {
        return nullptr;
    }
    return &read(folder, *entry, zones);
}

FolderIndex::File &FolderIndex::read(
    const CalendarFolder &folder, const CalendarFolder::Entry &entry, ZoneBook &zones)
{
    File &file = m_files[entry.name];
    if (file.isCertain && file.stamp == entry.stamp) {
        return file;
    }
    const auto contents = folder.read(entry.name);
    file.stamp = contents ? contents->stamp : entry.stamp;
    file.isCertain = !file.stamp.isFresh();
    const auto text = contents ? readIcal(contents->bytes) : std::nullopt;
    file.series = text ? seriesOfIcal(*text, QFile::decodeName(entry.name), zones)
                       : std::vector<IcalSeries>();
    return file;
}

VdirCalendars::VdirCalendars(QString root) : m_root(std::move(root)) {}

bool VdirCalendars::requestAccess(std::stop_token)
{
    return true; // the files' own permissions speak when they are touched
}

QList<CalendarInfo> VdirCalendars::calendars(std::stop_token stop)
{
    std::vector<QByteArray> names = CalendarFolder::namesIn(m_root);
    if (names.empty()) {
        if (!makePrivateFolder(m_root + u'/' + QLatin1StringView(kFirstCalendar))) {
            throw CalendarStoreError(qt_error_string());
        }
        names = CalendarFolder::namesIn(m_root);
    }
    QList<CalendarInfo> calendars;
    for (const QByteArray &name : names) {
        throwIfStopped(stop);
        calendars.append(infoOf(m_root, name));
    }
    const NameOrder order;
    std::stable_sort(calendars.begin(), calendars.end(),
        [&](const CalendarInfo &left, const CalendarInfo &right) {
            return order.compare(left.title, right.title) < 0;
        });
    return calendars;
}

std::optional<CalendarInfo> VdirCalendars::defaultCalendar(std::stop_token stop)
{
    const QList<CalendarInfo> all = calendars(std::move(stop));
    auto found = std::find_if(all.begin(), all.end(), &isFirstCalendar);
    if (found == all.end()) {
        found = std::find_if(all.begin(), all.end(),
            [](const CalendarInfo &calendar) { return calendar.allowsContentModifications; });
    }
    return found == all.end() ? std::nullopt : std::optional(*found);
}

QList<CalendarEvent> VdirCalendars::events(CalendarWindow window, std::stop_token stop)
{
    RecordCollector collector(window, systemZone(), stop);
    EachCalendar each;
    for (const QByteArray &name : CalendarFolder::namesIn(m_root)) {
        each.attempt([&] {
            const CalendarFolder folder(m_root, name);
            for (const auto &[file, told] : m_indexes[name].refresh(folder, m_zones, stop)) {
                for (const IcalSeries &series : told.series) {
                    collector.take(series, QFile::decodeName(name));
                }
            }
        });
    }
    if (!each.hasSucceeded()) {
        each.throwIfFailed();
    }
    return collector.finish();
}

std::optional<CalendarEvent> VdirCalendars::event(const QString &identifier, std::stop_token stop)
{
    const auto place = placeOf(CalendarFolder::namesIn(m_root), identifier, stop);
    return place ? recordAt(*place, stop) : std::nullopt;
}

CalendarEvent VdirCalendars::save(const CalendarEvent &event, std::stop_token stop)
{
    if (event.identifier.isEmpty()) {
        return create(event);
    }
    edit(event, stop, [&](EventFile &file, const IcalSeries &series, const Occurrence &occurrence) {
        file.change(series, occurrence, recordOf(series, occurrence, event.calendarIdentifier),
            event, editNow());
    });
    const auto place =
        placeOf({QFile::encodeName(event.calendarIdentifier)}, event.identifier, stop);
    const auto saved = place ? recordAt(*place, stop) : std::nullopt;
    return saved.value_or(event);
}

void VdirCalendars::remove(const CalendarEvent &event, std::stop_token stop)
{
    edit(event, stop, [](EventFile &file, const IcalSeries &series, const Occurrence &occurrence) {
        file.remove(series, occurrence, editNow());
    });
}

CalendarEvent VdirCalendars::create(const CalendarEvent &event)
{
    const QByteArray name = QFile::encodeName(event.calendarIdentifier);
    const CalendarFolder folder(m_root, name);
    const QString uid = uuidText(newUuid());
    const EditContext context = editNow();
    const IcalComponent component = newEvent(event, uid, context);
    const QByteArray bytes = newCalendarFile(component, event, context);
    folder.writeNew(uid.toLatin1() + ".ics", bytes);
    const auto told = eventOfIcal(component, m_zones);
    IcalSeries series{uid, told, {}};
    return recordOf(
        series, *firstOccurrence(series, *context.system, {}), event.calendarIdentifier);
}

// Most often the file is called as the event is, and no other need be read.
std::optional<VdirCalendars::Place> VdirCalendars::placeOf(
    const std::vector<QByteArray> &folders, const QString &identifier, const std::stop_token &stop)
{
    std::optional<Place> place;
    EachCalendar each;
    for (const auto find : {&VdirCalendars::likelyPlaceIn, &VdirCalendars::placeIn}) {
        for (const EventReference &reference : readingsOf(identifier)) {
            for (const QByteArray &folder : folders) {
                each.attempt([&] { place = (this->*find)(folder, reference, stop); });
                if (place) {
                    return place;
                }
            }
        }
    }
    each.throwIfFailed();
    return std::nullopt;
}

std::optional<VdirCalendars::Place> VdirCalendars::likelyPlaceIn(
    const QByteArray &name, const EventReference &reference, const std::stop_token &)
{
    const CalendarFolder folder(m_root, name);
    const QByteArray likely = likelyFileName(reference.uid);
    const FolderIndex::File *file = m_indexes[name].refresh(folder, likely, m_zones);
    return file != nullptr && holds(*file, reference.uid)
        ? std::optional(Place{name, likely, reference})
        : std::nullopt;
}

std::optional<VdirCalendars::Place> VdirCalendars::placeIn(
    const QByteArray &name, const EventReference &reference, const std::stop_token &stop)
{
    const CalendarFolder folder(m_root, name);
    for (const auto &[file, told] : m_indexes[name].refresh(folder, m_zones, stop)) {
        if (holds(told, reference.uid)) {
            return Place{name, file, reference};
        }
    }
    return std::nullopt;
}

std::optional<CalendarEvent> VdirCalendars::recordAt(
    const Place &place, const std::stop_token &stop)
{
    const CalendarFolder folder(m_root, place.folder);
    const FolderIndex::File *file = m_indexes[place.folder].refresh(folder, place.file, m_zones);
    if (file == nullptr) {
        return std::nullopt;
    }
    for (const IcalSeries &series : file->series) {
        if (series.uid != place.reference.uid) {
            continue;
        }
        const auto occurrence = occurrenceOf(series, place.reference.due, *systemZone(), stop);
        return occurrence
            ? std::optional(recordOf(series, *occurrence, QFile::decodeName(place.folder)))
            : std::nullopt;
    }
    return std::nullopt;
}

// Reads the event's file, has it changed and writes it; once more if somebody wrote it meanwhile.
template <typename Edit>
void VdirCalendars::edit(const CalendarEvent &event, const std::stop_token &stop, Edit change)
{
    constexpr int kTries = 5;
    const QByteArray name = QFile::encodeName(event.calendarIdentifier);
    const CalendarFolder folder(m_root, name);
    const FolderLock lock(folder.path(), kPatience);
    for (int tries = 0; tries < kTries; ++tries) {
        const auto place = placeOf({name}, event.identifier, stop);
        const auto contents = place ? folder.read(place->file) : std::nullopt;
        auto file = contents
            ? EventFile::read(contents->bytes, QFile::decodeName(place->file), m_zones)
            : std::nullopt;
        const IcalSeries *series = file ? file->find(place->reference.uid) : nullptr;
        const auto occurrence = series == nullptr
            ? std::nullopt
            : occurrenceOf(*series, place->reference.due, *systemZone(), stop);
        if (!occurrence) {
            throw eventIsGone();
        }
        change(*file, *series, *occurrence);
        if (file->isEmpty()) {
            folder.remove(place->file);
            return;
        }
        if (folder.replace(place->file, contents->stamp, file->bytes())) {
            return;
        }
    }
    throw CalendarStoreError(u"The calendar is being changed by another program."_s);
}

} // namespace velarc
