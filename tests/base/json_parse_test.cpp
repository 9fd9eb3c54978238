// What is read as JSON, what is refused, what it costs, and how it is written.

#include "base/errors.h"
#include "base/json.h"
#include "support/cpu_time.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

Json parsed(const QByteArray &utf8)
{
    return parseJson(utf8);
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

// The members "k0" to the last of `keys`, each with `mark` and its number for a value.
QByteArray members(int keys, const char *mark = "")
{
    QByteArray text;
    for (int key = 0; key < keys; ++key) {
        const QByteArray number = QByteArray::number(key);
        text += (key == 0 ? "\"k" : ",\"k") + number + "\":" + mark + number;
    }
    return text;
}

QByteArray objectOf(int keys)
{
    return "{" + members(keys) + "}";
}

// Each key stands twice, the second time with another value.
QByteArray doubledObject(int keys)
{
    return "{" + members(keys) + "," + members(keys, "1") + "}";
}

// Large values in the first member of each of many nested objects that grow behind it.
QByteArray largeValueInGrowingObjects(int elements)
{
    constexpr int kDepth = 500;
    QByteArray text = QByteArray("{\"a\":").repeated(kDepth);
    text += "[0" + QByteArray(",0").repeated(elements) + "]";
    return text + QByteArray(",\"b\":1,\"c\":2}").repeated(kDepth);
}

template <typename Make> void expectLinear(Make make)
{
    constexpr double kLinearRatio = 40; // for ten times the length: far from a hundred
    constexpr double kMeasurable = 0.001; // seconds
    const QByteArray small = make(100'000);
    const QByteArray large = make(1'000'000);
    const double smallTime = bestCpuTime([&] { EXPECT_FALSE(parsed(small).empty()); }).count();
    const double largeTime = cpuTime([&] { EXPECT_FALSE(parsed(large).empty()); }).count();
    EXPECT_LT(largeTime, kLinearRatio * std::max(smallTime, kMeasurable));
}

} // namespace

TEST(JsonParse, readsEveryKindOfValue)
{
    const Json value =
        parsed(R"( {"a":[null,true,false,-1,1,1.5,"x\n\u00e9\ud83d\ude00",{},[]]} )");
    const Json expected{{"a",
        {nullptr, true, false, -1, 1, 1.5, "x\n\u00E9\U0001F600", Json::object(), Json::array()}}};
    EXPECT_EQ(value, expected);
}

TEST(JsonParse, readsAValueThatStandsAlone)
{
    EXPECT_EQ(parsed("3"), Json(3));
    EXPECT_EQ(parsed("\"\""), Json(""));
    EXPECT_EQ(parsed("null"), Json(nullptr));
}

TEST(JsonParse, keysKeepTheirOrder)
{
    EXPECT_EQ(writeJson(parsed(R"({"z":1,"a":2,"m":{"y":3,"b":4}})")),
        R"({"z":1,"a":2,"m":{"y":3,"b":4}})");
}

TEST(JsonParse, ofTwoEqualKeysTheLaterValueStandsInTheEarliersPlace)
{
    EXPECT_EQ(writeJson(parsed(R"({"a":1,"b":[2],"a":{"c":3},"d":4,"a":5})")),
        R"({"a":5,"b":[2],"d":4})");
    EXPECT_EQ(writeJson(parsed(R"({"":1,"":2})")), R"({"":2})");
}

TEST(JsonParse, equalKeysOfAnObjectOfAnySizeAreMerged)
{
    for (const int keys : {1, 15, 16, 17, 32, 33, 1000}) {
        const Json value = parsed(doubledObject(keys));
        ASSERT_EQ(value.size(), static_cast<std::size_t>(keys));
        EXPECT_EQ(writeJson(value), "{" + members(keys, "1") + "}") << keys;
    }
}

TEST(JsonParse, nestsFiveHundredAndTwelveDeepAndNoDeeper)
{
    EXPECT_EQ(writeJson(parsed(nested(512))), nested(512));
    EXPECT_THROW(parsed(nested(513)), JsonError);
    const QByteArray objects = QByteArray("{\"a\":").repeated(513) + "1" + QByteArray(513, '}');
    EXPECT_THROW(parsed(objects), JsonError);
    EXPECT_EQ(parsed("[" + nested(511) + "," + nested(511) + "]").size(), 2U);
}

TEST(JsonParse, refusesWhatIsNoJson)
{
    for (const char *text :
        {"", " ", "{", "}", "[1,]", "{\"a\"}", "{\"a\":1,}", "{a:1}", "'a'", "tru", "01", "+1",
            "1.", ".5", "NaN", "Infinity", "\"a", "\"\t\"", "// x\n1", "[1 2]"}) {
        EXPECT_THROW(parsed(text), JsonError) << text;
    }
    EXPECT_THROW(static_cast<void>(parseJson(QByteArrayView())), JsonError);
}

TEST(JsonParse, refusesTextBehindTheDocument)
{
    for (const char *text : {"{} x", "{}{}", "1,", "[]]", "null null"}) {
        EXPECT_THROW(parsed(text), JsonError) << text;
    }
}

TEST(JsonParse, aZeroByteIsNoEndOfTheText)
{
    EXPECT_THROW(parsed(QByteArray("1\0", 2)), JsonError);
    EXPECT_THROW(parsed(QByteArray("{}\0{}", 5)), JsonError);
    EXPECT_THROW(parsed(QByteArray("[1,\0 2]", 7)), JsonError);
    EXPECT_THROW(parsed(QByteArray("\"a\0\"", 4)), JsonError);
}

TEST(JsonParse, refusesInvalidUtf8)
{
    for (const char *text : {"\"\xFF\"", "\"\xC3\"", "\"\xC0\x80\"", "\"\xED\xA0\x80\"",
             "\"\xF4\x90\x80\x80\"", "\"\x80\"", "{\"\xE2\x82\":1}"}) {
        EXPECT_THROW(parsed(text), JsonError);
    }
}

TEST(JsonParse, refusesEscapesOfHalfACharacter)
{
    for (const char *text : {R"("\ud800")", R"("\udc00")", R"("\ud800\u0041")", R"("\ud800\ud800")",
             R"("\u12")", R"("\x41")"}) {
        EXPECT_THROW(parsed(text), JsonError) << text;
    }
}

TEST(JsonParse, numbersAreExactToTheEdgesOfSixtyFourBits)
{
    EXPECT_EQ(decodeInteger(parsed("9223372036854775807")), std::numeric_limits<qint64>::max());
    EXPECT_EQ(decodeInteger(parsed("-9223372036854775808")), std::numeric_limits<qint64>::min());
    EXPECT_THROW(static_cast<void>(decodeInteger(parsed("9223372036854775808"))), JsonError);
    EXPECT_THROW(static_cast<void>(decodeInteger(parsed("18446744073709551616"))), JsonError);
    EXPECT_THROW(static_cast<void>(decodeInteger(parsed("-9223372036854775809"))), JsonError);
    EXPECT_THROW(static_cast<void>(decodeInteger(parsed("9223372036854775808.0"))), JsonError);
    EXPECT_EQ(writeJson(parsed("18446744073709551615")), "18446744073709551615");
}

TEST(JsonParse, refusesANumberThatNoDoubleHolds)
{
    EXPECT_THROW(parsed("1e400"), JsonError);
    EXPECT_THROW(parsed("[-1e400]"), JsonError);
    EXPECT_EQ(decodeNumber(parsed("1e-400")), 0.0);
    EXPECT_EQ(decodeNumber(parsed("1.7976931348623157e308")), std::numeric_limits<double>::max());
}

TEST(JsonParse, aStopEndsIt)
{
    std::stop_source source;
    source.request_stop();
    const QByteArray elements = "[0" + QByteArray(",0").repeated(10'000) + "]";
    EXPECT_THROW(static_cast<void>(parseJson(elements, source.get_token())), CancellationError);
    const QByteArray arrays = "[[]" + QByteArray(",[]").repeated(10'000) + "]";
    EXPECT_THROW(static_cast<void>(parseJson(arrays, source.get_token())), CancellationError);
    EXPECT_EQ(parseJson(elements, std::stop_source().get_token()).size(), 10'001U);
}

TEST(JsonParse, costsLinearTimeInTheKeysOfAnObject)
{
    expectLinear([](int keys) { return objectOf(keys); });
    expectLinear([](int keys) { return doubledObject(keys); });
}

TEST(JsonParse, costsLinearTimeWhereALargeValueStandsInObjectsThatGrow)
{
    expectLinear([](int elements) { return largeValueInGrowingObjects(elements); });
    const QByteArray plain = "[0" + QByteArray(",0").repeated(1'000'000) + "]";
    const QByteArray wrapped = largeValueInGrowingObjects(1'000'000);
    const double plainTime = bestCpuTime([&] { EXPECT_FALSE(parsed(plain).empty()); }).count();
    const double wrappedTime = bestCpuTime([&] { EXPECT_FALSE(parsed(wrapped).empty()); }).count();
    EXPECT_LT(wrappedTime, 10 * plainTime);
}

TEST(JsonParse, aMillionBracketsAreRefusedAtTheFirstTooMany)
{
    const double time = cpuTime([] {
        EXPECT_THROW(parsed(QByteArray(1'000'000, '[')), JsonError);
        EXPECT_THROW(parsed(nested(1'000'000)), JsonError);
        EXPECT_THROW(parsed(QByteArray("{\"a\":").repeated(1'000'000)), JsonError);
    }).count();
    EXPECT_LT(time, 1.0);
}

TEST(JsonWrite, keepsEveryValidText)
{
    const QByteArray text =
        "[\"\\u0000 \\u001f\\\"\\\\ /\\b\\f\\n\\r\\t \u00E9 \u2028 \uFFFD \U0001F600\",0.1,-0.0]";
    EXPECT_EQ(writeJson(parsed(text)), text);
}

TEST(JsonWrite, replacesOnlyWhatIsNoUtf8)
{
    EXPECT_EQ(writeJson(Json("a\xFF"
                             "b")),
        "\"a\uFFFDb\"");
}

TEST(JsonWrite, textsGoThereAndBackButForHalfCharacters)
{
    const QString text = u"a\u00E9\U0001F600\n\"\\"_qs + QChar(0) + u'z';
    EXPECT_EQ(jsonText(parsed(writeJson(jsonFromText(text)))), text);
    EXPECT_EQ(jsonText(jsonFromText(u"")), QString());
    EXPECT_EQ(jsonText(jsonFromText(QString(QChar(0xD800)))), u"?"_qs);
}

} // namespace velarc
