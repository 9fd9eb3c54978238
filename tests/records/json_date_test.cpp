#include "record_cases.h"

#include "base/locale_text.h"
#include "records/json_date.h"

namespace velarc {

namespace {

using namespace std::chrono_literals;

constexpr Instant kReference{978'307'200s};

Instant dateOf(const char *json)
{
    return decodeDate(parseJson(json));
}

} // namespace

TEST(JsonDate, zeroIsTheFirstMomentOf2001InUniversalTime)
{
    EXPECT_EQ(dateOf("0"), kReference);
    EXPECT_EQ(iso8601(dateOf("0")), QStringLiteral("2001-01-01T00:00:00Z"));
    EXPECT_EQ(encodeDate(kReference), Json(0.0));
}

TEST(JsonDate, secondsCountForwardAndBackwardWithFractions)
{
    EXPECT_EQ(dateOf("1.5"), kReference + 1500ms);
    EXPECT_EQ(dateOf("-1.25"), kReference - 1250ms);
    EXPECT_EQ(dateOf("793292400"), kReference + 793292400s);
    EXPECT_EQ(encodeDate(kReference + 1500ms), Json(1.5));
    EXPECT_EQ(encodeDate(kReference - 1250ms), Json(-1.25));
    EXPECT_EQ(encodeDate(Instant{} - 250ms), Json(-978307200.25));
}

TEST(JsonDate, isWrittenAsAFloatingPointNumber)
{
    EXPECT_TRUE(encodeDate(kReference + 7s).is_number_float());
}

TEST(JsonDate, numberThatWasReadIsWrittenBackUnchanged)
{
    for (const double seconds : {793292400.123456, 793292400.1234567, 0.1, -0.1, -31622400.7,
             1e9 + 1.0 / 3, 8e9 + 0.0000011, -1e10 + 0.000002}) {
        EXPECT_EQ(encodeDate(decodeDate(Json(seconds))).get<double>(), seconds);
    }
}

TEST(JsonDate, momentThatDoesNotFitIsRefused)
{
    expectRefused(decodeDate,
        {
            {"huge", "1e300"},
            {"hugely negative", "-1e300"},
            {"largest integer", "9223372036854775807"},
            {"smallest integer", "-9223372036854775808"},
            {"largest unsigned integer", "18446744073709551615"},
            {"just behind the last second", "8245064836"},
            {"just before the first second", "-10201679237"},
        });
    EXPECT_NO_THROW((void)dateOf("8245064834"));
    EXPECT_NO_THROW((void)dateOf("8245064834.9999999"));
    EXPECT_NO_THROW((void)dateOf("-10201679235"));
}

TEST(JsonDate, extremesOfTheClockCanBeWritten)
{
    EXPECT_NEAR(encodeDate(Instant::max()).get<double>(), 8245064836.8, 0.1);
    EXPECT_NEAR(encodeDate(Instant::min()).get<double>(), -10201679236.8, 0.1);
}

TEST(JsonDate, whatIsNoNumberIsRefused)
{
    expectRefused(decodeDate,
        {
            {"text", "\"2026-02-20T15:00:00Z\""},
            {"boolean", "true"},
            {"null", "null"},
            {"object", "{}"},
        });
}

TEST(JsonDate, missingKeyAndNullAreNoDate)
{
    const Json document = parseJson(R"({"null":null,"set":1,"wrong":"1"})");
    const ObjectReader object(document);
    EXPECT_EQ(readDate(object, "missing"), std::nullopt);
    EXPECT_EQ(readDate(object, "null"), std::nullopt);
    EXPECT_EQ(readDate(object, "set"), kReference + 1s);
    EXPECT_THROW((void)readDate(object, "wrong"), JsonError);
}

} // namespace velarc
