#include "record_cases.h"

#include "records/provider_connections.h"
#include "support/printers.h"

namespace velarc {

namespace {

using namespace std::chrono_literals;

constexpr Instant kVerified{978'307'200s + 793'292'400s + 500ms};

ProviderConnectionState someConnected()
{
    ProviderConnectionState state;
    state.openAI = {true, kVerified};
    state.anthropic = {true, std::nullopt};
    return state;
}

} // namespace

TEST(ProviderConnections, nothingIsConnectedAtFirst)
{
    const ProviderConnectionState state;
    for (const auto &info : {state.openAI, state.gemini, state.anthropic}) {
        EXPECT_FALSE(info.isConnected);
        EXPECT_EQ(info.lastVerifiedAt, std::nullopt);
    }
}

TEST(ProviderConnections, writesTheThreeEnginesInOrderAndADateOnlyWhereThereIsOne)
{
    EXPECT_EQ(writeJson(encodeProviderConnections(someConnected())),
        R"({"openAI":{"isConnected":true,"lastVerifiedAt":793292400.5},)"
        R"("gemini":{"isConnected":false},"anthropic":{"isConnected":true}})");
}

TEST(ProviderConnections, whatIsWrittenIsReadBack)
{
    EXPECT_EQ(
        decodeProviderConnections(encodeProviderConnections(someConnected())), someConnected());
    EXPECT_EQ(decodeProviderConnections(encodeProviderConnections({})), ProviderConnectionState());
}

TEST(ProviderConnections, eachMissingEngineIsNotConnected)
{
    ProviderConnectionState openAI;
    openAI.openAI.isConnected = true;
    ProviderConnectionState gemini;
    gemini.gemini = {false, kVerified};
    ProviderConnectionState anthropic;
    anthropic.anthropic.isConnected = true;
    expectRead<ProviderConnectionState>(decodeProviderConnections,
        {
            {"nothing", "{}", {}},
            {"nulls", R"({"openAI":null,"gemini":null,"anthropic":null})", {}},
            {"first alone", R"({"openAI":{"isConnected":true}})", openAI},
            {"second alone, dated",
                R"({"gemini":{"isConnected":false,"lastVerifiedAt":793292400.5}})", gemini},
            {"third alone, date null",
                R"({"anthropic":{"isConnected":true,"lastVerifiedAt":null}})", anthropic},
            {"unknown keys", R"({"mistral":1,"openAI":{"isConnected":true,"key":"x"}})", openAI},
        });
}

TEST(ProviderConnections, engineThatIsThereMustTellWhetherItIsConnected)
{
    expectRefused(decodeProviderConnections,
        {
            {"missing in the first", R"({"openAI":{}})"},
            {"missing in the second", R"({"gemini":{"lastVerifiedAt":1}})"},
            {"missing in the third", R"({"anthropic":{}})"},
            {"null", R"({"openAI":{"isConnected":null}})"},
        });
}

TEST(ProviderConnections, wrongTypeIsRefused)
{
    expectRefused(decodeProviderConnections,
        {
            {"no object", "true"},
            {"boolean as engine", R"({"openAI":true})"},
            {"array as engine", R"({"gemini":[]})"},
            {"number as flag", R"({"anthropic":{"isConnected":1}})"},
            {"text as date", R"({"openAI":{"isConnected":true,"lastVerifiedAt":"today"}})"},
            {"hostile date", R"({"openAI":{"isConnected":true,"lastVerifiedAt":1e300}})"},
        });
}

} // namespace velarc
