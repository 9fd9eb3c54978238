// The clock that the other tests move by hand keeps its own promises.

#include "base/errors.h"
#include "base/locale_text.h"
#include "fakes/fake_clock.h"
#include "support/printers.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Writes `name` and the milliseconds since `start` when its pause is over, "!" for a stopped one.
QCoro::Task<void> note(FakeClock *clock, std::chrono::milliseconds duration, QString name,
    std::stop_token stop, QStringList *notes)
{
    const Instant start = clock->now();
    try {
        co_await clock->pause(duration, std::move(stop));
        const auto passed =
            std::chrono::duration_cast<std::chrono::milliseconds>(clock->now() - start);
        notes->append(name + QString::number(passed.count()));
    } catch (const CancellationError &) {
        notes->append(name + u'!');
    }
}

QCoro::Task<void> noteTwice(FakeClock *clock, std::chrono::milliseconds each, QStringList *notes)
{
    co_await note(clock, each, u"first "_qs, {}, notes);
    co_await note(clock, each, u"second "_qs, {}, notes);
}

} // namespace

TEST(FakeClock, startsAtAKnownInstantAndMovesByHand)
{
    FakeClock clock;
    EXPECT_EQ(iso8601(clock.now()), u"2026-02-20T15:00:00Z"_qs);
    clock.advance(90s);
    EXPECT_EQ(iso8601(clock.now()), u"2026-02-20T15:01:30Z"_qs);
    clock.setNow(Instant());
    EXPECT_EQ(clock.now(), Instant());
}

TEST(FakeClock, endsPausesInTheOrderOfTheirInstants)
{
    FakeClock clock;
    QStringList notes;
    note(&clock, 30ms, u"c"_qs, {}, &notes);
    note(&clock, 10ms, u"a"_qs, {}, &notes);
    note(&clock, 10ms, u"b"_qs, {}, &notes);
    EXPECT_EQ(clock.pausesWaiting(), 3U);
    clock.advance(9ms);
    EXPECT_TRUE(notes.isEmpty());
    clock.advance(1ms);
    EXPECT_EQ(notes, QStringList({u"a10"_qs, u"b10"_qs}));
    clock.advance(1h);
    EXPECT_EQ(notes.last(), u"c30"_qs);
    EXPECT_EQ(clock.pausesWaiting(), 0U);
}

TEST(FakeClock, nextPauseCountsFromTheInstantTheLastOneEnded)
{
    FakeClock clock;
    QStringList notes;
    noteTwice(&clock, 90ms, &notes);
    clock.advance(179ms);
    EXPECT_EQ(notes, QStringList({u"first 90"_qs}));
    clock.advance(1ms);
    EXPECT_EQ(notes, QStringList({u"first 90"_qs, u"second 90"_qs}));
}

TEST(FakeClock, stoppedPauseEndsInTheEventLoop)
{
    FakeClock clock;
    QStringList notes;
    std::stop_source source;
    note(&clock, 1h, u"a"_qs, source.get_token(), &notes);
    source.request_stop();
    EXPECT_TRUE(notes.isEmpty());
    EXPECT_EQ(clock.pausesWaiting(), 1U);
    turnEventLoop();
    EXPECT_EQ(notes, QStringList({u"a!"_qs}));
    EXPECT_EQ(clock.pausesWaiting(), 0U);
}

TEST(FakeClock, tokenThatWasStoppedBeforeEndsThePauseAtOnce)
{
    FakeClock clock;
    QStringList notes;
    std::stop_source source;
    source.request_stop();
    note(&clock, 1h, u"a"_qs, source.get_token(), &notes);
    EXPECT_EQ(notes, QStringList({u"a!"_qs}));
}

TEST(FakeClock, endOfTheClockEndsItsPausesAsAStopDoes)
{
    auto clock = std::make_unique<FakeClock>();
    QStringList notes;
    note(clock.get(), 1h, u"a"_qs, {}, &notes);
    note(clock.get(), 2h, u"b"_qs, {}, &notes);
    clock.reset();
    EXPECT_EQ(notes, QStringList({u"a!"_qs, u"b!"_qs}));
}

} // namespace velarc
