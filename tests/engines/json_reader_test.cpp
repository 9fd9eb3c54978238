// Reading hostile JSON token by token and into records.

#include "base/async.h"
#include "base/errors.h"
#include "engines/json_reader.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <random>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

struct Inner
{
    std::optional<qint64> count;
};

struct Outer
{
    std::optional<QString> name;
    std::optional<QByteArray> bytes;
    std::optional<Inner> inner;
};

void readJson(JsonReader &reader, Inner &inner)
{
    reader.object(field("count", inner.count));
}

void readJson(JsonReader &reader, Outer &outer)
{
    reader.object(
        field("name", outer.name), field("bytes", outer.bytes), field("inner", outer.inner));
}

Outer outerOf(const QByteArray &utf8)
{
    return recordFromJson<Outer>(utf8, {});
}

std::optional<qint64> countOf(const QByteArray &number)
{
    return outerOf(R"({"inner":{"count":)" + number + "}}").inner->count;
}

// Whether the tokens of `utf8` come to an end.
bool isRead(const QByteArray &utf8)
{
    try {
        JsonTokens tokens(utf8);
        while (tokens.next().kind != JsonToken::Kind::End) {}
        return true;
    } catch (const JsonError &) {
        return false;
    }
}

bool isParsed(const QByteArray &utf8)
{
    try {
        static_cast<void>(parseJson(utf8));
        return true;
    } catch (const JsonError &) {
        return false;
    }
}

// Whether the library refuses `utf8` for a number beyond every type.
bool overflows(const QByteArray &utf8)
{
    try {
        static_cast<void>(parseJson(utf8));
    } catch (const JsonError &error) {
        return std::string(error.what()).find("number overflow") != std::string::npos;
    }
    return false;
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

} // namespace

TEST(JsonReader, readsTheNamedFieldsAndPassesTheOthersOver)
{
    const Outer outer = outerOf(
        R"( {"x":[1,{"name":"no"},[]],"name":"A\u00e9\ud83d\ude42\/\n","inner":{"count":-7},)"
        R"("z":null,"bytes":"QQ=="} )");
    EXPECT_EQ(outer.name, u"Aé🙂/\n"_s);
    EXPECT_EQ(outer.bytes, "QQ==");
    EXPECT_EQ(outer.inner.value_or(Inner()).count, -7);
}

TEST(JsonReader, absentAndNullFieldsAreEmpty)
{
    for (const char *text : {"{}", R"({"name":null,"bytes":null,"inner":null})"}) {
        const Outer outer = outerOf(text);
        EXPECT_FALSE(outer.name || outer.bytes || outer.inner) << text;
    }
}

TEST(JsonReader, ofTwoEqualKeysTheLaterStands)
{
    EXPECT_EQ(outerOf(R"({"name":"a","name":"b"})").name, u"b"_s);
    EXPECT_EQ(outerOf(R"({"name":"a","name":null})").name, std::nullopt);
    EXPECT_EQ(outerOf(R"({"n\u0061me":"a"})").name, u"a"_s);
}

TEST(JsonReader, aWrongTypeFailsTheWhole)
{
    for (const char *text : {"[]", "7", "null", R"({"name":1})", R"({"name":true})",
             R"({"name":["a"]})", R"({"inner":[]})", R"({"inner":{"count":"1"}})",
             R"({"bytes":{}})", R"({"name":"a"} {})", R"({"name":"a")"}) {
        EXPECT_THROW(outerOf(text), JsonError) << text;
    }
}

TEST(JsonReader, onlyWholeNumbersAreIntegers)
{
    EXPECT_EQ(countOf("3"), 3);
    EXPECT_EQ(countOf("3.0"), 3);
    EXPECT_EQ(countOf("3e2"), 300);
    EXPECT_EQ(countOf("-0"), 0);
    EXPECT_EQ(countOf("9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(countOf("-9223372036854775808"), std::numeric_limits<qint64>::min());
    for (const char *text : {"3.5", "1e300", "1e400", "-1e400", "1e-400", "true",
             "9223372036854775808", "12345678901234567890123", "-9223372036854775809.0"}) {
        EXPECT_THROW(countOf(text), JsonError) << text;
    }
}

TEST(JsonReader, halfASurrogatePairReadsAsTheReplacementCharacter)
{
    EXPECT_EQ(outerOf(R"({"name":"a\ud83d"})").name, u"a\uFFFD"_s);
    EXPECT_EQ(outerOf(R"({"name":"\ude42b"})").name, u"\uFFFDb"_s);
    EXPECT_EQ(outerOf(R"({"name":"\ud83d\u0041"})").name, u"\uFFFDA"_s);
    EXPECT_EQ(outerOf(R"({"name":"\ud83d\ud83d\ude42"})").name, u"\uFFFD🙂"_s);
}

TEST(JsonReader, errorsQuoteNothingOfTheText)
{
    for (const char *text : {"secret", R"({"secret" 1})", R"({"name":secret})",
             R"({"name":{"secret":1}})", "{} secret", "\"secret\xFF\""}) {
        try {
            outerOf(text);
            FAIL() << text;
        } catch (const JsonError &error) {
            EXPECT_EQ(std::string(error.what()).find("secret"), std::string::npos);
        }
    }
}

TEST(JsonTokens, nestingEndsAt512)
{
    EXPECT_TRUE(isRead(nested(512)));
    EXPECT_FALSE(isRead(nested(513)));
    EXPECT_FALSE(isRead(QByteArray(10'000'000, '[')));
    EXPECT_FALSE(isRead(QByteArray(R"({"a":)").repeated(1'000'000)));
}

TEST(JsonTokens, malformedTextsAreRefused)
{
    for (const char *text : {"", " ", "{", "}", "[", "]", "[1,]", "[,1]", "[1 2]", "{\"a\"}",
             "{\"a\":}", "{\"a\":1,}", "{,}", "{1:2}", "{\"a\":1 \"b\":2}", "[1}", "{\"a\":1]",
             "01", "-", "+1", "1.", ".5", "1e", "1e+", "0x1", "NaN", "tru", "nul", "truefalse",
             "\"", "\"\\\"", "\"\\x\"", "\"\\u12\"", "\"\\u12g4\"", "\"a\nb\"", "\"\x01\"", "'a'",
             "1 1", "[] []", "//", "\"\xC0\xAF\"", "\xEF\xBB", "\xC2\xA0[]"}) {
        EXPECT_FALSE(isRead(text)) << text;
        EXPECT_FALSE(isParsed(text)) << text;
    }
    EXPECT_FALSE(isRead(QByteArray("[]\0", 3)));
    EXPECT_FALSE(isRead(QByteArray("\"\0\"", 3)));
}

TEST(JsonTokens, aByteOrderMarkIsPassedOver)
{
    EXPECT_TRUE(isRead("\xEF\xBB\xBF[]"));
    EXPECT_TRUE(isParsed("\xEF\xBB\xBF[]"));
}

TEST(JsonTokens, acceptsWhatTheLibraryAccepts)
{
    const QByteArray base = R"({"a":[1,-2.5e+3,true,false,null,"x\"\\\u00e9\n"],"b":{},"":[[]]} )";
    const QByteArray letters = "{}[]:,\"\\ \n0123456789-+.eEutrfalsn/x\x01\xC3\xA9\xFF";
    std::mt19937 random(42);
    int accepted = 0;
    for (int round = 0; round < 50'000; ++round) {
        QByteArray text = base;
        for (auto edits = 1 + random() % 3; edits > 0; --edits) {
            const auto at = static_cast<qsizetype>(random()) % text.size();
            const char letter = letters[static_cast<qsizetype>(random()) % letters.size()];
            switch (random() % 3) {
            case 0:
                text[at] = letter;
                break;
            case 1:
                text.insert(at, letter);
                break;
            default:
                text.remove(at, 1);
            }
        }
        if (overflows(text)) {
            continue; // read here, refused there
        }
        const bool parsed = isParsed(text);
        ASSERT_EQ(isRead(text), parsed) << text.constData();
        accepted += parsed ? 1 : 0;
    }
    EXPECT_GT(accepted, 1000);
}

TEST(JsonTokens, aStopEndsTheReading)
{
    std::stop_source stop;
    stop.request_stop();
    const QByteArray utf8 = "[" + QByteArray("1,").repeated(1'000'000) + "1]";
    EXPECT_THROW(
        static_cast<void>(recordFromJson<Outer>(R"({"x":)" + utf8 + "}", stop.get_token())),
        CancellationError);
}

} // namespace velarc
