// What hostile documents cost. Times are compared with each other, never with a clock on the wall.

#include "actions/action_json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace velarc {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr int kSmall = 100'000;
constexpr int kLarge = 1'000'000;

// Ten times the keys in ten times the time, with room for a busy machine; squared it is a hundred.
constexpr double kMostTimes = 20;

// The best of three, so that a pause of the machine is not counted.
template <typename Work> Seconds timeOf(Work work)
{
    Seconds best = Seconds::max();
    for (int round = 0; round < 3; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best = std::min<Seconds>(best, std::chrono::steady_clock::now() - start);
    }
    return best;
}

template <typename Key> QByteArray libraryOfKeys(int count, Key keyOf)
{
    QByteArray json = "[{";
    json.reserve(count * 16);
    for (int index = 0; index < count; ++index) {
        json += '"';
        json += keyOf(index);
        json += "\":0,";
    }
    json += "\"name\":\"Last\"}]";
    return json;
}

template <typename Key> void expectLinearReading(Key keyOf)
{
    const auto read = [](const QByteArray &json) {
        const QList<AIAction> actions = decodeActions(parseJson(json));
        ASSERT_EQ(actions.size(), 1);
        ASSERT_EQ(actions.front().name, QStringLiteral("Last"));
    };
    const QByteArray smallDocument = libraryOfKeys(kSmall, keyOf);
    const QByteArray largeDocument = libraryOfKeys(kLarge, keyOf);
    const Seconds smallTime = timeOf([&] { read(smallDocument); });
    const Seconds largeTime = timeOf([&] { read(largeDocument); });
    EXPECT_LT(largeTime / smallTime, kMostTimes);
}

void expectRefusedInLinearTime(const QByteArray &open, const QByteArray &close)
{
    const auto refuse = [](const QByteArray &json) {
        ASSERT_THROW((void)decodeActions(parseJson(json)), JsonError);
    };
    const auto nested = [&](int depth) { return open.repeated(depth) + close.repeated(depth); };
    const QByteArray smallDocument = nested(kSmall);
    const QByteArray largeDocument = nested(kLarge);
    const Seconds smallTime = timeOf([&] { refuse(smallDocument); });
    const Seconds largeTime = timeOf([&] { refuse(largeDocument); });
    EXPECT_LT(largeTime / smallTime, kMostTimes);
}

} // namespace

TEST(ActionReadingCost, aMillionDifferentKeysCostNoMoreThanTheirLength)
{
    expectLinearReading([](int index) { return "key" + QByteArray::number(index); });
}

TEST(ActionReadingCost, aMillionEqualKeysCostNoMoreThanTheirLength)
{
    expectLinearReading([](int) { return QByteArray("unknown"); });
}

TEST(ActionReadingCost, aMillionNestedListsAreRefused)
{
    expectRefusedInLinearTime("[", "]");
}

TEST(ActionReadingCost, aMillionNestedObjectsAreRefused)
{
    expectRefusedInLinearTime("{\"skills\":", "}");
}

TEST(ActionReadingCost, aMillionBracketsThatNeverCloseAreRefused)
{
    expectRefusedInLinearTime("[{\"actionDestination\":", "");
}

TEST(ActionReadingCost, aMillionSkillsAreRead)
{
    const QByteArray json =
        "[{\"skills\":[" + QByteArray("\"s\",").repeated(kLarge - 1) + "\"s\"]}]";
    EXPECT_EQ(decodeActions(parseJson(json)).front().skills.size(), kLarge);
}

} // namespace velarc
