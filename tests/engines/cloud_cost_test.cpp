// What replies cost to read and to show, whatever their shape.

#include "engines/cloud_call.h"
#include "engines/json_pretty.h"
#include "engines/openai_calls.h"
#include "engines/openai_service.h"
#include "support/cpu_time.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr int kFew = 10'000;
constexpr int kMany = 10 * kFew;

// Ten times the reply may take this many times as long: far from a hundred times, but with room
// for what caches and page faults do.
constexpr double kLinearRatio = 40;

// Below this a measurement says little of what grows.
constexpr double kMeasurable = 0.001;

QByteArray keysOf(int count)
{
    QByteArray object = "{";
    for (int index = 0; index < count; ++index) {
        object += "\"key" + QByteArray::number(index) + "\":" + QByteArray::number(index) + ",";
    }
    return object + R"("output_text":"Hello"})";
}

QByteArray repeated(const char *begin, const char *unit, int count, const char *end)
{
    return begin + QByteArray(unit).repeated(count) + end;
}

// The time to read and show a reply; a failure is an outcome like any other.
double secondsFor(const QByteArray &body)
{
    const CloudCall call = responsesCall(QUrl(u"http://localhost"_s), textRequest(u"Hi"_s), 1);
    const CloudExchange exchange{"{}", HttpReply{200, {}, body}, {}, {}};
    return bestCpuTime([&] {
        try {
            EXPECT_FALSE(textOf(call.result(exchange, {})).isEmpty());
        } catch (const OpenAIServiceError &error) {
            EXPECT_FALSE(error.message().isEmpty());
        }
        EXPECT_FALSE(prettyJSONText(body).isEmpty());
    }).count();
}

template <typename MakeReply> void expectLinear(MakeReply makeReply)
{
    const double small = secondsFor(makeReply(kFew));
    const double large = secondsFor(makeReply(kMany));
    EXPECT_LT(large, kLinearRatio * std::max(small, kMeasurable));
}

} // namespace

TEST(CloudReplyCost, growsWithTheReplyAndNoFaster)
{
    expectLinear(keysOf);
    expectLinear([](int count) { return repeated("[", "1,", count, "1]"); });
    expectLinear([](int count) { return repeated("[", "{},", count, "{}]"); });
    expectLinear([](int count) { return repeated("[\"", "\\u00e9", count, "\"]"); });
    expectLinear([](int count) { return repeated("", "{\"a\":[", count, ""); });
    expectLinear([](int count) { return repeated("", " ", count, ""); });
    expectLinear([](int count) { return repeated("", "\u3000", count, "x"); });
    expectLinear([](int count) { return repeated("e", "\u0301", count, ""); });
}

TEST(CloudReplyCost, growsWithTheItemsOfAnOutputAndNoFaster)
{
    expectLinear([](int count) {
        return repeated(
            R"({"output":[)", R"({"type":"m","content":[{"text":"a"}]},)", count, "{}]}");
    });
    expectLinear([](int count) {
        return repeated(R"({"output":[{"content":[)", R"({"refusal":"no"},)", count, "{}]}]}");
    });
    expectLinear([](int count) { return repeated("{", R"("output":[{}],)", count, R"("a":1})"); });
}

} // namespace velarc
