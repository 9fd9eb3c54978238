#include "system_actions/calendar_zone.h"

#include <QDateTime>
#include <QFile>
#include <QList>
#include <QTimeZone>

#include <algorithm>
#include <ctime>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using std::chrono::seconds;

// The longest name in the database has 32 characters.
constexpr qsizetype kLongestName = 64;

// "America/Argentina/Buenos_Aires" is the deepest that names go.
constexpr qsizetype kDeepestName = 3;

QDateTime dateTimeOf(UtcTime utc)
{
    return QDateTime::fromSecsSinceEpoch(utc.time_since_epoch().count(), Qt::UTC);
}

class UtcZone final : public CalendarZone
{
public:
    UtcZone() : CalendarZone("UTC") {}
    [[nodiscard]] seconds offsetAt(UtcTime) const override { return seconds::zero(); }
};

class ZoneOfChanges final : public CalendarZone
{
public:
    ZoneOfChanges(QByteArray name, std::vector<ZoneChange> changes)
        : CalendarZone(std::move(name)), m_changes(std::move(changes))
    {
    }

    [[nodiscard]] seconds offsetAt(UtcTime utc) const override
    {
        const auto next = std::upper_bound(m_changes.begin(), m_changes.end(), utc,
            [](UtcTime moment, const ZoneChange &change) { return moment < change.at; });
        return next == m_changes.begin() ? next->before : std::prev(next)->after;
    }

private:
    std::vector<ZoneChange> m_changes;
};

// Qt lists the changes up to the year 2037; behind it the zone's last rule is asked each time.
class DatabaseZone final : public CalendarZone
{
public:
    DatabaseZone(QByteArray name, QTimeZone zone)
        : CalendarZone(name)
        , m_zone(std::move(zone))
        , m_listed(zoneOfChanges(std::move(name), changesOf(m_zone)))
    {
    }

    [[nodiscard]] seconds offsetAt(UtcTime utc) const override
    {
        return utc < kEndOfList ? m_listed->offsetAt(utc)
                                : seconds(m_zone.offsetFromUtc(dateTimeOf(utc)));
    }

private:
    static constexpr UtcTime kStartOfList = std::chrono::sys_days(std::chrono::year(1600) / 1 / 1);
    static constexpr UtcTime kEndOfList = std::chrono::sys_days(std::chrono::year(2037) / 1 / 1);

    QTimeZone m_zone;
    ZonePointer m_listed;

    static std::vector<ZoneChange> changesOf(const QTimeZone &zone)
    {
        seconds before(zone.offsetFromUtc(dateTimeOf(kStartOfList)));
        std::vector<ZoneChange> changes{{kStartOfList, before, before}};
        const auto listed = zone.transitions(dateTimeOf(kStartOfList), dateTimeOf(kEndOfList));
        for (const QTimeZone::OffsetData &change : listed) {
            const seconds after(change.offsetFromUtc);
            changes.push_back({UtcTime(seconds(change.atUtc.toSecsSinceEpoch())), before, after});
            before = after;
        }
        return changes;
    }
};

class SystemZone final : public CalendarZone
{
public:
    explicit SystemZone(QByteArray name) : CalendarZone(std::move(name)) {}

    [[nodiscard]] seconds offsetAt(UtcTime utc) const override
    {
        const std::time_t moment = utc.time_since_epoch().count();
        std::tm parts{};
        return seconds(localtime_r(&moment, &parts) == nullptr ? 0 : parts.tm_gmtoff);
    }
};

// "Area/Place": parts of letters, digits and a few signs, of which none leads anywhere else.
bool isZoneName(QByteArrayView name)
{
    const auto isOfName = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')
            || c == '_' || c == '+' || c == '-' || c == '/';
    };
    return !name.isEmpty() && name.size() <= kLongestName
        && std::all_of(name.begin(), name.end(), isOfName) && !name.startsWith('/')
        && !name.endsWith('/');
}

// QTimeZone takes any word for a rule by itself, such as "Nowhere" for UTC, and so the database's
// own files are asked for the name.
bool isInDatabase(const QByteArray &name)
{
    constexpr QByteArrayView kMark("TZif");
    if (!isZoneName(name)) {
        return false;
    }
    for (const QString &folder : {u"/usr/share/zoneinfo/"_s, u"/usr/lib/zoneinfo/"_s}) {
        QFile file(folder + QString::fromLatin1(name));
        if (file.open(QIODevice::ReadOnly) && file.read(kMark.size()) == kMark) {
            return true;
        }
    }
    return false;
}

ZonePointer zoneCalled(const QByteArray &name)
{
    if (name == "UTC") {
        return utcZone();
    }
    const QTimeZone zone = isInDatabase(name) ? QTimeZone(name) : QTimeZone();
    return zone.isValid() ? std::make_shared<DatabaseZone>(name, zone) : nullptr;
}

} // namespace

WallTime CalendarZone::wallTimeAt(UtcTime utc) const
{
    return WallTime(utc.time_since_epoch() + offsetAt(utc));
}

UtcTime CalendarZone::utcTimeOf(WallTime wall) const
{
    constexpr std::chrono::days kBeyondAnyChange(1);
    const UtcTime asIfUtc(wall.time_since_epoch());
    const seconds before = offsetAt(asIfUtc - kBeyondAnyChange);
    const seconds after = offsetAt(asIfUtc + kBeyondAnyChange);
    if (before == after) {
        return asIfUtc - before;
    }
    for (const UtcTime utc :
        {asIfUtc - std::max(before, after), asIfUtc - std::min(before, after)}) {
        if (wallTimeAt(utc) == wall) {
            return utc;
        }
    }
    return asIfUtc - before;
}

ZonePointer zoneOfChanges(QByteArray name, std::vector<ZoneChange> changes)
{
    return std::make_shared<ZoneOfChanges>(std::move(name), std::move(changes));
}

ZonePointer utcZone()
{
    static const ZonePointer kZone = std::make_shared<UtcZone>();
    return kZone;
}

ZonePointer systemZone()
{
    tzset();
    const QByteArray name = QTimeZone::systemTimeZoneId();
    return std::make_shared<SystemZone>(isInDatabase(name) ? name : QByteArray());
}

ZonePointer databaseZone(const QByteArray &name)
{
    if (!name.startsWith('/')) {
        return zoneCalled(name);
    }
    const QList<QByteArray> parts = name.split('/');
    for (qsizetype depth = std::min(kDeepestName, parts.size() - 1); depth > 0; --depth) {
        if (ZonePointer zone = zoneCalled(parts.last(depth).join('/'))) {
            return zone;
        }
    }
    return nullptr;
}

ZonePointer windowsZone(const QByteArray &name)
{
    const QByteArray id =
        name.size() <= kLongestName ? QTimeZone::windowsIdToDefaultIanaId(name) : QByteArray();
    return id.isEmpty() ? nullptr : zoneCalled(id);
}

} // namespace velarc
