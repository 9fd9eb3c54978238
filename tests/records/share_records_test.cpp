#include "record_cases.h"

#include "base/uuid.h"
#include "records/share_records.h"
#include "support/printers.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QUuid kAction = *uuidFromText(u"6F9619FF-8B86-D011-B42D-00CF4FC964FF");
constexpr Instant kCreated{978'307'200s + 793'292'400s + 500ms};

ShareHandoffRequest wholeRequest()
{
    return {kAction, u"Grüße\n😀"_s, u"Notes"_s, kCreated};
}

ShareResult wholeResult()
{
    return {kAction, u"Summary"_s, u"One line."_s, kCreated};
}

} // namespace

TEST(ShareHandoffRequest, writesItsKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeShareHandoffRequest(wholeRequest())),
        QByteArray("{\"actionID\":\"6F9619FF-8B86-D011-B42D-00CF4FC964FF\","
                   "\"inputText\":\"Gr\u00fc\u00dfe\\n\U0001F600\",\"sourceApp\":\"Notes\","
                   "\"createdAt\":793292400.5}"));
}

TEST(ShareHandoffRequest, optionalKeysAreLeftOutWhenAbsent)
{
    EXPECT_EQ(writeJson(encodeShareHandoffRequest({std::nullopt, u"x"_s, std::nullopt, kCreated})),
        R"({"inputText":"x","createdAt":793292400.5})");
}

TEST(ShareHandoffRequest, documentsThatAreRead)
{
    expectRead<ShareHandoffRequest>(decodeShareHandoffRequest,
        {
            {"required keys alone", R"({"inputText":"","createdAt":793292400.5})",
                {std::nullopt, QString(), std::nullopt, kCreated}},
            {"null optionals",
                R"({"actionID":null,"inputText":"x","sourceApp":null,"createdAt":793292400.5})",
                {std::nullopt, u"x"_s, std::nullopt, kCreated}},
            {"unknown key, and a whole number as date",
                R"({"createdAt":793292400,"inputText":"x","urgent":true})",
                {std::nullopt, u"x"_s, std::nullopt, kCreated - 500ms}},
        });
    EXPECT_EQ(decodeShareHandoffRequest(encodeShareHandoffRequest(wholeRequest())), wholeRequest());
}

TEST(ShareHandoffRequest, missingRequiredKeyOrWrongTypeIsRefused)
{
    expectRefused(decodeShareHandoffRequest,
        {
            {"no object", R"("text")"},
            {"nothing", "{}"},
            {"no text", R"({"createdAt":1})"},
            {"null text", R"({"inputText":null,"createdAt":1})"},
            {"no date", R"({"inputText":"x"})"},
            {"null date", R"({"inputText":"x","createdAt":null})"},
            {"number as text", R"({"inputText":1,"createdAt":1})"},
            {"text as date", R"({"inputText":"x","createdAt":"1"})"},
            {"hostile date", R"({"inputText":"x","createdAt":-1e300})"},
            {"number as source", R"({"inputText":"x","createdAt":1,"sourceApp":1})"},
            {"no UUID as action", R"({"inputText":"x","createdAt":1,"actionID":"a"})"},
            {"number as action", R"({"inputText":"x","createdAt":1,"actionID":1})"},
        });
}

TEST(ShareResult, writesItsKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeShareResult(wholeResult())),
        R"({"actionID":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","actionName":"Summary",)"
        R"("output":"One line.","createdAt":793292400.5})");
}

TEST(ShareResult, actionIsLeftOutWhenAbsent)
{
    EXPECT_EQ(writeJson(encodeShareResult({std::nullopt, u"n"_s, u"o"_s, kCreated})),
        R"({"actionName":"n","output":"o","createdAt":793292400.5})");
}

TEST(ShareResult, documentsThatAreRead)
{
    expectRead<ShareResult>(decodeShareResult,
        {
            {"required keys alone", R"({"actionName":"n","output":"o","createdAt":793292400.5})",
                {std::nullopt, u"n"_s, u"o"_s, kCreated}},
            {"null action and an unknown key",
                R"({"actionID":null,"actionName":"n","output":"o","createdAt":793292400.5,"x":1})",
                {std::nullopt, u"n"_s, u"o"_s, kCreated}},
        });
    EXPECT_EQ(decodeShareResult(encodeShareResult(wholeResult())), wholeResult());
}

TEST(ShareResult, missingRequiredKeyOrWrongTypeIsRefused)
{
    const Json whole = encodeShareResult(wholeResult());
    for (const char *key : {"actionName", "output", "createdAt"}) {
        SCOPED_TRACE(key);
        Json without = whole;
        without.erase(key);
        EXPECT_THROW((void)decodeShareResult(without), JsonError);
        Json null = whole;
        null[key] = nullptr;
        EXPECT_THROW((void)decodeShareResult(null), JsonError);
    }
    for (const char *key : {"actionID", "actionName", "output", "createdAt"}) {
        SCOPED_TRACE(key);
        Json changed = whole;
        changed[key] = true;
        EXPECT_THROW((void)decodeShareResult(changed), JsonError);
    }
    expectRefused(decodeShareResult, {{"no object", "[]"}, {"nothing", "{}"}});
}

} // namespace velarc
