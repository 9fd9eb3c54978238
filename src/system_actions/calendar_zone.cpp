#include "system_actions/calendar_zone.h"

#include <QList>

#include <unicode/timezone.h>
#include <unicode/vtzone.h>

#include <algorithm>
#include <string_view>

namespace velarc {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// The longest name in the database has 32 characters.
constexpr qsizetype kLongestName = 64;

// "America/Argentina/Buenos_Aires" is the deepest that names go.
constexpr qsizetype kDeepestName = 3;

class UtcZone final : public CalendarZone
{
public:
    UtcZone() : CalendarZone("UTC") {}
    [[nodiscard]] seconds offsetAt(UtcTime) const override { return seconds::zero(); }
};

class DatabaseZone final : public CalendarZone
{
public:
    DatabaseZone(QByteArray name, std::unique_ptr<icu::TimeZone> zone)
        : CalendarZone(std::move(name)), m_zone(std::move(zone))
    {
    }

    [[nodiscard]] seconds offsetAt(UtcTime utc) const override
    {
        const auto moment = static_cast<UDate>(milliseconds(utc.time_since_epoch()).count());
        UErrorCode status = U_ZERO_ERROR;
        int32_t raw = 0;
        int32_t daylight = 0;
        m_zone->getOffset(moment, false, raw, daylight, status);
        return std::chrono::floor<seconds>(milliseconds(raw + daylight));
    }

private:
    std::unique_ptr<icu::TimeZone> m_zone;
};

QByteArray utf8(const icu::UnicodeString &text)
{
    std::string bytes;
    text.toUTF8String(bytes);
    return QByteArray::fromStdString(bytes);
}

ZonePointer zoneCalled(const QByteArray &name)
{
    const auto id = icu::UnicodeString::fromUTF8({name.constData(), static_cast<int>(name.size())});
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
    if (!zone || *zone == icu::TimeZone::getUnknown()) {
        return nullptr;
    }
    return std::make_shared<DatabaseZone>(name, std::move(zone));
}

// Without the library's own property, and offsets without seconds where there are none.
QByteArray asOthersWriteIt(const QByteArray &definition)
{
    constexpr qsizetype kWithSeconds = std::string_view("TZOFFSETTO:+hhmmss").size();
    QByteArray written;
    for (QByteArray line : definition.split('\n')) {
        line = line.trimmed();
        const qsizetype surplus = line.startsWith("TZOFFSETFROM:") ? 2 : 0;
        if (line.startsWith("TZOFFSET") && line.endsWith("00")
            && line.size() - surplus == kWithSeconds) {
            line.chop(2);
        }
        if (!line.isEmpty() && !line.startsWith("X-TZINFO")) {
            written += line + "\r\n";
        }
    }
    return written;
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
    for (const UtcTime utc : {asIfUtc - std::max(before, after), asIfUtc - std::min(before, after)}) {
        if (wallTimeAt(utc) == wall) {
            return utc;
        }
    }
    return asIfUtc - before;
}

ZonePointer utcZone()
{
    static const ZonePointer kZone = std::make_shared<UtcZone>();
    return kZone;
}

ZonePointer systemZone()
{
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    zone->getID(id);
    const bool isKnown = zoneCalled(utf8(id)) != nullptr;
    return std::make_shared<DatabaseZone>(isKnown ? utf8(id) : QByteArray(), std::move(zone));
}

ZonePointer databaseZone(const QByteArray &name)
{
    if (!name.startsWith('/')) {
        return name.size() <= kLongestName ? zoneCalled(name) : nullptr;
    }
    const QList<QByteArray> parts = name.split('/');
    for (qsizetype depth = std::min(kDeepestName, parts.size() - 1); depth > 0; --depth) {
        const QByteArray tail = parts.last(depth).join('/');
        if (ZonePointer zone = tail.size() <= kLongestName ? zoneCalled(tail) : nullptr) {
            return zone;
        }
    }
    return nullptr;
}

ZonePointer windowsZone(const QByteArray &name)
{
    if (name.size() > kLongestName) {
        return nullptr;
    }
    const auto windowsId =
        icu::UnicodeString::fromUTF8({name.constData(), static_cast<int>(name.size())});
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString id;
    icu::TimeZone::getIDForWindowsID(windowsId, nullptr, id, status);
    return U_FAILURE(status) != 0 || id.isEmpty() ? nullptr : zoneCalled(utf8(id));
}

QByteArray zoneDefinition(const CalendarZone &zone, UtcTime from)
{
    const QByteArray &name = zone.name();
    const std::unique_ptr<icu::VTimeZone> definition(icu::VTimeZone::createVTimeZoneByID(
        icu::UnicodeString::fromUTF8({name.constData(), static_cast<int>(name.size())})));
    if (!definition || *definition == icu::TimeZone::getUnknown()) {
        return {};
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString text;
    definition->write(
        static_cast<UDate>(milliseconds(from.time_since_epoch()).count()), text, status);
    return U_FAILURE(status) != 0 ? QByteArray() : asOthersWriteIt(utf8(text));
}

} // namespace velarc
