#include "base/json.h"
#include "base/uuid.h"
#include "support/printers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

Json parsed(const QByteArray &utf8)
{
    return parseJson(utf8);
}

} // namespace

TEST(ObjectReader, readsEachTypeUnderItsKey)
{
    const Json object = parsed(R"({"t":"x","b":false,"i":-7,"d":1.5,)"
                               R"("u":"6f9619ff-8b86-d011-b42d-00cf4fc964ff","l":["a","b"]})");
    const ObjectReader reader(object);
    EXPECT_EQ(reader.text("t"), u"x"_qs);
    EXPECT_EQ(reader.boolean("b"), false);
    EXPECT_EQ(reader.integer("i"), -7);
    EXPECT_EQ(reader.number("d"), 1.5);
    EXPECT_EQ(reader.number("i"), -7.0);
    EXPECT_EQ(reader.uuid("u"), uuidFromText(u"6F9619FF-8B86-D011-B42D-00CF4FC964FF"));
    EXPECT_EQ(reader.list("l", decodeText), QStringList({u"a"_qs, u"b"_qs}));
    ASSERT_NE(reader.find("l"), nullptr);
    EXPECT_EQ(reader.find("l")->size(), 2U);
}

TEST(ObjectReader, missingKeysAndNullsReadAsNone)
{
    const Json object = parsed(R"({"a":null})");
    const ObjectReader reader(object);
    for (const char *key : {"a", "b", ""}) {
        EXPECT_EQ(reader.find(key), nullptr);
        EXPECT_FALSE(reader.text(key));
        EXPECT_FALSE(reader.boolean(key));
        EXPECT_FALSE(reader.integer(key));
        EXPECT_FALSE(reader.number(key));
        EXPECT_FALSE(reader.uuid(key));
        EXPECT_FALSE(reader.list(key, decodeText));
    }
}

TEST(ObjectReader, aWrongTypeFails)
{
    const Json object = parsed(R"({"n":1,"s":"1","b":true,"a":[],"o":{},"m":["x",1]})");
    const ObjectReader reader(object);
    for (const char *key : {"n", "b", "a", "o"}) {
        EXPECT_THROW(static_cast<void>(reader.text(key)), JsonError) << key;
        EXPECT_THROW(static_cast<void>(reader.uuid(key)), JsonError) << key;
    }
    for (const char *key : {"s", "b", "a", "o"}) {
        EXPECT_THROW(static_cast<void>(reader.integer(key)), JsonError) << key;
        EXPECT_THROW(static_cast<void>(reader.number(key)), JsonError) << key;
    }
    for (const char *key : {"n", "s", "a", "o"}) {
        EXPECT_THROW(static_cast<void>(reader.boolean(key)), JsonError) << key;
    }
    for (const char *key : {"n", "s", "b", "o", "m"}) {
        EXPECT_THROW(static_cast<void>(reader.list(key, decodeText)), JsonError) << key;
    }
    EXPECT_THROW(static_cast<void>(reader.uuid("s")), JsonError);
}

TEST(ObjectReader, wantsAnObject)
{
    for (const char *text : {"[]", "null", "1", "\"{}\"", "true"}) {
        const Json value = parsed(text);
        EXPECT_THROW(ObjectReader{value}, JsonError) << text;
    }
}

TEST(ObjectReader, integersMayBeWrittenWithAFractionOfZero)
{
    const Json object = parsed(R"({"a":3,"b":3.0,"c":3e2,"d":3.5,"e":1e300,"f":-0.0})");
    const ObjectReader reader(object);
    EXPECT_EQ(reader.integer("a"), 3);
    EXPECT_EQ(reader.integer("b"), 3);
    EXPECT_EQ(reader.integer("c"), 300);
    EXPECT_THROW(static_cast<void>(reader.integer("d")), JsonError);
    EXPECT_THROW(static_cast<void>(reader.integer("e")), JsonError);
    EXPECT_EQ(reader.integer("f"), 0);
}

TEST(ObjectReader, requiredFieldsMustBeThere)
{
    EXPECT_EQ(ObjectReader::required(std::optional(5), "n"), 5);
    EXPECT_THROW(static_cast<void>(ObjectReader::required(std::optional<int>(), "n")), JsonError);
}

TEST(ObjectReader, failuresNameTheKeyOrTheTypes)
{
    const Json object = parsed(R"({"tags":5})");
    const ObjectReader reader(object);
    try {
        static_cast<void>(reader.list("tags", decodeText));
        FAIL() << "a number was read as a list";
    } catch (const JsonError &error) {
        EXPECT_STREQ(error.what(), "tags is no array");
    }
    try {
        static_cast<void>(reader.text("tags"));
        FAIL() << "a number was read as a text";
    } catch (const JsonError &error) {
        EXPECT_STREQ(error.what(), "expected a string, found number");
    }
}

TEST(JsonDecode, uuidIsReadInItsStrictFormOnly)
{
    EXPECT_THROW(
        static_cast<void>(decodeUuid(Json("{6F9619FF-8B86-D011-B42D-00CF4FC964FF}"))), JsonError);
    EXPECT_THROW(static_cast<void>(decodeUuid(Json(""))), JsonError);
}

} // namespace velarc
