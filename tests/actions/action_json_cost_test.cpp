// What hostile documents cost. Times are compared with each other, never with a clock on the wall.

#include "actions/action_json.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace velarc {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr int kSmall = 100'000;
constexpr int kLarge = 1'000'000;

// Ten times the keys in ten times the time, with room for a busy machine; squared it is a hundred.
constexpr double kMostTimes = 20;

template <typename Work> Seconds timeOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

// Works on both documents, up to three times, so that a pause of the machine is not counted.
template <typename Work>
void expectLinear(const QByteArray &smallDocument, const QByteArray &largeDocument, Work work)
{
    double times = kMostTimes;
    for (int round = 0; round < 3 && times >= kMostTimes; ++round) {
        const Seconds smallTime = timeOf([&] { work(smallDocument); });
        const Seconds largeTime = timeOf([&] { work(largeDocument); });
        times = largeTime / smallTime;
    }
    EXPECT_LT(times, kMostTimes);
    ::testing::Test::RecordProperty("timesForTenTimesTheLength", std::to_string(times));
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
    expectLinear(
        libraryOfKeys(kSmall, keyOf), libraryOfKeys(kLarge, keyOf), [](const QByteArray &json) {
            const QList<AIAction> actions = decodeActions(parseJson(json));
            ASSERT_EQ(actions.size(), 1);
            ASSERT_EQ(actions.front().name, QStringLiteral("Last"));
        });
}

void expectRefusedInLinearTime(const QByteArray &open, const QByteArray &close)
{
    const auto nested = [&](int depth) { return open.repeated(depth) + close.repeated(depth); };
    expectLinear(nested(kSmall), nested(kLarge), [](const QByteArray &json) {
        ASSERT_THROW((void)decodeActions(parseJson(json)), JsonError);
    });
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

TEST(ActionReadingCost, unknownKeyIsIgnoredUntilItNestsTooDeeply)
{
    const auto nested = [](int depth) {
        return QByteArray("[{\"unknown\":") + QByteArray("[").repeated(depth)
            + QByteArray("]").repeated(depth) + "}]";
    };
    constexpr int kLibraryAndAction = 2;
    EXPECT_EQ(decodeActions(parseJson(nested(kMaxJsonDepth - kLibraryAndAction))).size(), 1);
    for (const int depth : {kMaxJsonDepth - kLibraryAndAction + 1, kSmall, kLarge}) {
        EXPECT_THROW((void)decodeActions(parseJson(nested(depth))), JsonError);
    }
}

TEST(ActionReadingCost, aMillionSkillsAreRead)
{
    const QByteArray json =
        "[{\"skills\":[" + QByteArray("\"s\",").repeated(kLarge - 1) + "\"s\"]}]";
    EXPECT_EQ(decodeActions(parseJson(json)).front().skills.size(), kLarge);
}

} // namespace velarc
