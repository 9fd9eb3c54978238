#include "base/local_time.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>

#include <memory>

namespace velarc {

using namespace std::chrono;

namespace {

// Every zone of ICU is one, but its base class does not say so.
std::unique_ptr<icu::BasicTimeZone> systemZone()
{
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    auto *basic = dynamic_cast<icu::BasicTimeZone *>(zone.get());
    if (basic == nullptr) {
        return nullptr;
    }
    static_cast<void>(zone.release());
    return std::unique_ptr<icu::BasicTimeZone>(basic);
}

milliseconds offsetAtWallTime(WallTime time)
{
    const auto zone = systemZone();
    UErrorCode status = U_ZERO_ERROR;
    int32_t raw = 0;
    int32_t saving = 0;
    if (zone) {
        zone->getOffsetFromLocal(static_cast<UDate>(time.time_since_epoch().count()),
            UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, saving, status);
    }
    return milliseconds(U_SUCCESS(status) ? raw + saving : 0);
}

milliseconds offsetAt(sys_time<milliseconds> time)
{
    const auto zone = systemZone();
    UErrorCode status = U_ZERO_ERROR;
    int32_t raw = 0;
    int32_t saving = 0;
    if (zone) {
        zone->getOffset(
            static_cast<UDate>(time.time_since_epoch().count()), false, raw, saving, status);
    }
    return milliseconds(U_SUCCESS(status) ? raw + saving : 0);
}

} // namespace

std::optional<Instant> instantAt(sys_time<milliseconds> time)
{
    constexpr sys_days kFirst = year(1678) / January / 1;
    constexpr sys_days kBehindLast = year(2262) / January / 1;
    if (time < kFirst || time >= kBehindLast) {
        return std::nullopt;
    }
    return Instant(time);
}

std::optional<Instant> instantAtWallTime(WallTime time)
{
    return instantAt(sys_time<milliseconds>(time.time_since_epoch() - offsetAtWallTime(time)));
}

std::optional<Instant> addingDays(Instant instant, days added)
{
    const auto whole = floor<milliseconds>(instant);
    const WallTime shown(whole.time_since_epoch() + offsetAt(whole));
    const auto later = instantAtWallTime(shown + added);
    if (!later) {
        return std::nullopt;
    }
    return *later + duration_cast<Instant::duration>(instant - whole);
}

} // namespace velarc
