#include "base/errors.h"
#include "base/json.h"
#include "engines/json_pretty.h"
#include "support/cpu_time.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

QString prettyOf(const QByteArray &data)
{
    return prettyJSONText(data);
}

} // namespace

TEST(PrettyJSONText, laysObjectsAndArraysOutInTheirOrder)
{
    EXPECT_EQ(prettyOf(R"( {"b":1,"a":[true,false,null,"x"],"e":{},"f":[],"c":{"d":[[1]]}} )"),
        u"{\n"
        "  \"b\": 1,\n"
        "  \"a\": [\n"
        "    true,\n"
        "    false,\n"
        "    null,\n"
        "    \"x\"\n"
        "  ],\n"
        "  \"e\": {},\n"
        "  \"f\": [],\n"
        "  \"c\": {\n"
        "    \"d\": [\n"
        "      [\n"
        "        1\n"
        "      ]\n"
        "    ]\n"
        "  }\n"
        "}"_s);
    EXPECT_EQ(prettyOf("[ ]"), u"[]"_s);
}

TEST(PrettyJSONText, isWhatTheLibraryWritesButForTheEmptyLinesInEmptyThings)
{
    const QByteArray text = R"({"a":[1,{"b":"c","d":[]},{}],"e":-0.5,"f":{"g":[[],[2]]},"h":"é"})";
    EXPECT_EQ(prettyOf(text), QString::fromStdString(parseJson(text).dump(2)));
}

TEST(PrettyJSONText, numbersStayAsTheyWereWritten)
{
    EXPECT_EQ(prettyOf("[1e400,12345678901234567890123,1.0,-0,0.1000,1E+2]"),
        u"[\n  1e400,\n  12345678901234567890123,\n  1.0,\n  -0,\n  0.1000,\n  1E+2\n]"_s);
}

TEST(PrettyJSONText, equalKeysAllStay)
{
    EXPECT_EQ(prettyOf(R"({"a":1,"a":2})"), u"{\n  \"a\": 1,\n  \"a\": 2\n}"_s);
}

TEST(PrettyJSONText, escapedCharactersAreShownButThoseThatMustStayEscaped)
{
    EXPECT_EQ(prettyOf(R"(["\u00e9\ud83d\ude42\/\u003c"])"), u"[\n  \"é🙂/<\"\n]"_s);
    const QByteArray kept = R"(\"\\\n\t\b\f\r\u0000\u001B\u007f\u0022\u005c\ud83d x \ude42)";
    EXPECT_EQ(prettyOf("[\"" + kept + "\"]"), u"[\n  \""_s + QString::fromUtf8(kept) + u"\"\n]"_s);
    EXPECT_EQ(prettyOf(R"({"\u006bey":1})"), u"{\n  \"key\": 1\n}"_s);
}

TEST(PrettyJSONText, absentBytesAreNamed)
{
    EXPECT_EQ(prettyJSONText(std::nullopt), u"<empty body>"_s);
    EXPECT_EQ(prettyOf(QByteArray("")), QString());
}

TEST(PrettyJSONText, everythingElseIsShownAsItCame)
{
    for (const char *text : {"7", "\"a\"", "true", "null", " plain text\n", "<html>", "{\"a\":1",
             "{\"a\":1} x", "[1,]", "\u00e9"}) {
        EXPECT_EQ(prettyOf(text), QString::fromUtf8(text));
    }
}

TEST(PrettyJSONText, bytesThatAreNoTextAreNamed)
{
    EXPECT_EQ(prettyOf("\xFF"), u"<non-utf8 body>"_s);
    EXPECT_EQ(prettyOf("[\"\xFF\"]"), u"<non-utf8 body>"_s);
}

TEST(PrettyJSONText, nestingEndsAt512)
{
    const QByteArray deep = QByteArray(513, '[') + QByteArray(513, ']');
    EXPECT_EQ(prettyOf(deep), QString::fromUtf8(deep));
    EXPECT_TRUE(prettyOf(QByteArray(512, '[') + QByteArray(512, ']')).startsWith(u"[\n  [\n"_s));
}

TEST(PrettyJSONText, blanksDoNotOutgrowAHostileBody)
{
    // Each number of two bytes would take a line of a kilobyte.
    const QByteArray deep =
        QByteArray(511, '[') + QByteArray("1,").repeated(1'000'000) + "1" + QByteArray(511, ']');
    EXPECT_EQ(prettyOf(deep), QString::fromUtf8(deep));
}

TEST(PrettyJSONText, aStopEndsThePrinting)
{
    std::stop_source stop;
    stop.request_stop();
    const QByteArray large = "[" + QByteArray("1,").repeated(1'000'000) + "1]";
    EXPECT_THROW(static_cast<void>(prettyJSONText(large, stop.get_token())), CancellationError);
}

} // namespace velarc
