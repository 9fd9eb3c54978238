#include "record_cases.h"

#include "records/provider_models.h"
#include "records/provider_settings.h"
#include "support/printers.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

template <typename Change> ProviderSettings with(Change change)
{
    ProviderSettings settings = defaultProviderSettings();
    change(settings);
    return settings;
}

ProviderSettings allSet()
{
    ProviderSettings settings;
    settings.defaultProvider = AIProvider::Gemini;
    settings.defaultOpenAIModelID = u"o"_s;
    settings.defaultGeminiModelID = u"g"_s;
    settings.defaultAnthropicModelID = u"a"_s;
    settings.enableAppleIntelligence = false;
    settings.appleUseCase = u"contentTagging"_s;
    return settings;
}

} // namespace

TEST(ProviderSettings, defaultsAreTheOnDeviceEngineAndOneModelEach)
{
    const ProviderSettings settings = defaultProviderSettings();
    EXPECT_EQ(settings.defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_EQ(settings.defaultOpenAIModelID, u"gpt-5"_s);
    EXPECT_EQ(settings.defaultGeminiModelID, u"gemini-2.5-flash"_s);
    EXPECT_EQ(settings.defaultAnthropicModelID, u"claude-opus-4-1-20250805"_s);
    EXPECT_TRUE(settings.enableAppleIntelligence);
    EXPECT_EQ(settings.appleUseCase, u"general"_s);
    EXPECT_EQ(settings.legacyOpenAIAPIKey, std::nullopt);
}

TEST(ProviderSettings, writesSixKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeProviderSettings(allSet())),
        R"({"defaultProvider":"gemini","defaultOpenAIModelID":"o","defaultGeminiModelID":"g",)"
        R"("defaultAnthropicModelID":"a","enableAppleIntelligence":false,)"
        R"("appleUseCase":"contentTagging"})");
}

TEST(ProviderSettings, whatIsWrittenIsReadBack)
{
    EXPECT_EQ(decodeProviderSettings(encodeProviderSettings(allSet())), allSet());
    for (const AIProvider provider : allProviders()) {
        const auto settings = with([&](auto &fields) { fields.defaultProvider = provider; });
        EXPECT_EQ(decodeProviderSettings(encodeProviderSettings(settings)), settings);
    }
}

TEST(ProviderSettings, eachMissingKeyTakesItsDefault)
{
    expectRead<ProviderSettings>(decodeProviderSettings,
        {
            {"nothing", "{}", defaultProviderSettings()},
            {"provider alone", R"({"defaultProvider":"localFallback"})",
                with([](auto &fields) { fields.defaultProvider = AIProvider::LocalFallback; })},
            {"first model alone", R"({"defaultOpenAIModelID":"x"})",
                with([](auto &fields) { fields.defaultOpenAIModelID = u"x"_s; })},
            {"second model alone", R"({"defaultGeminiModelID":"x"})",
                with([](auto &fields) { fields.defaultGeminiModelID = u"x"_s; })},
            {"third model alone", R"({"defaultAnthropicModelID":"x"})",
                with([](auto &fields) { fields.defaultAnthropicModelID = u"x"_s; })},
            {"switch alone", R"({"enableAppleIntelligence":false})",
                with([](auto &fields) { fields.enableAppleIntelligence = false; })},
            {"use case alone", R"({"appleUseCase":""})",
                with([](auto &fields) { fields.appleUseCase = QString(); })},
            {"nulls",
                R"({"defaultProvider":null,"defaultOpenAIModelID":null,"defaultModel":null,)"
                R"("defaultGeminiModelID":null,"defaultAnthropicModelID":null,)"
                R"("enableAppleIntelligence":null,"appleUseCase":null,"openAIAPIKey":null})",
                defaultProviderSettings()},
            {"unknown key", R"({"temperature":[1]})", defaultProviderSettings()},
        });
}

TEST(ProviderSettings, wrongTypeOrUnknownSpellingIsRefused)
{
    expectRefused(decodeProviderSettings,
        {
            {"no object", "[]"},
            {"null document", "null"},
            {"unknown provider", R"({"defaultProvider":"mistral"})"},
            {"provider in other case", R"({"defaultProvider":"OpenAI"})"},
            {"number as provider", R"({"defaultProvider":1})"},
            {"number as first model", R"({"defaultOpenAIModelID":5})"},
            {"number as second model", R"({"defaultGeminiModelID":5})"},
            {"number as third model", R"({"defaultAnthropicModelID":5})"},
            {"number as switch", R"({"enableAppleIntelligence":1})"},
            {"text as switch", R"({"enableAppleIntelligence":"true"})"},
            {"boolean as use case", R"({"appleUseCase":true})"},
            {"number as legacy model", R"({"defaultModel":5})"},
            {"number as legacy key", R"({"openAIAPIKey":5})"},
        });
}

TEST(ProviderSettings, documentWithOnlyALegacyModelTakesItAndTheDefaultsElsewhere)
{
    const auto settings = decodeProviderSettings(parseJson(R"({"defaultModel":"gpt-4"})"));
    EXPECT_EQ(settings, with([](auto &fields) { fields.defaultOpenAIModelID = u"gpt-4"_s; }));
    EXPECT_EQ(settings.defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_TRUE(settings.enableAppleIntelligence);
}

TEST(ProviderSettings, writingLegacySettingsBackYieldsSixKeysWithoutTheLegacyOnes)
{
    const Json written = encodeProviderSettings(
        decodeProviderSettings(parseJson(R"({"defaultModel":"gpt-4","openAIAPIKey":"sk-1"})")));
    EXPECT_EQ(written.size(), 6U);
    EXPECT_EQ(written["defaultOpenAIModelID"], "gpt-4");
    EXPECT_FALSE(written.contains("defaultModel"));
    EXPECT_FALSE(written.contains("openAIAPIKey"));
    EXPECT_FALSE(written.contains("legacyOpenAIAPIKey"));
}

TEST(ProviderSettings, todaysModelWinsOverTheLegacyOne)
{
    const auto settings =
        decodeProviderSettings(parseJson(R"({"defaultModel":"old","defaultOpenAIModelID":"new"})"));
    EXPECT_EQ(settings.defaultOpenAIModelID, u"new"_s);
}

TEST(ProviderSettings, legacyKeyIsTrimmed)
{
    const auto key = [](const char *json) {
        return decodeProviderSettings(parseJson(json)).legacyOpenAIAPIKey;
    };
    EXPECT_EQ(key(R"({"openAIAPIKey":" \n\tsk-1 \r\n"})"), u"sk-1"_s);
    EXPECT_EQ(key(R"({"openAIAPIKey":"  "})"), QString());
    EXPECT_EQ(key(R"({"legacyOpenAIAPIKey":"sk-1"})"), std::nullopt);
}

TEST(ProviderSettings, defaultModelOfACloudEngineIsTrimmedAndNeverBlank)
{
    ProviderSettings settings = allSet();
    settings.defaultOpenAIModelID = u" gpt-5-mini\n"_s;
    settings.defaultGeminiModelID = u" \t"_s;
    settings.defaultAnthropicModelID = QString();
    EXPECT_EQ(defaultModelID(settings, AIProvider::OpenAI), u"gpt-5-mini"_s);
    EXPECT_EQ(defaultModelID(settings, AIProvider::Gemini), u"gemini-2.5-flash"_s);
    EXPECT_EQ(defaultModelID(settings, AIProvider::Anthropic), u"claude-opus-4-1-20250805"_s);
}

TEST(ProviderSettings, otherProvidersHaveNoDefaultModel)
{
    for (const AIProvider provider :
        {AIProvider::UseDefault, AIProvider::AppleIntelligence, AIProvider::LocalFallback}) {
        EXPECT_EQ(defaultModelID(allSet(), provider), QString());
        EXPECT_EQ(setDefaultModelID(allSet(), provider, u"x"), allSet());
    }
}

TEST(ProviderSettings, settingADefaultModelTouchesThatEngineOnlyAndTrims)
{
    ProviderSettings expected = allSet();
    expected.defaultGeminiModelID = u"gemini-2.5-pro"_s;
    EXPECT_EQ(setDefaultModelID(allSet(), AIProvider::Gemini, u" gemini-2.5-pro "), expected);
}

TEST(ProviderSettings, settingABlankModelGivesTheLiteralDefault)
{
    const auto afterBlank = [](AIProvider provider) {
        return setDefaultModelID(allSet(), provider, u" \n");
    };
    EXPECT_EQ(afterBlank(AIProvider::OpenAI).defaultOpenAIModelID, u"gpt-5"_s);
    EXPECT_EQ(afterBlank(AIProvider::Gemini).defaultGeminiModelID, u"gemini-2.5-flash"_s);
    EXPECT_EQ(
        afterBlank(AIProvider::Anthropic).defaultAnthropicModelID, u"claude-opus-4-1-20250805"_s);
}

TEST(ProviderModels, listsStandInOrder)
{
    const QList<ProviderModelOption> openAI{
        {u"gpt-5"_s, u"GPT-5"_s, u"Highest quality"_s},
        {u"gpt-5-mini"_s, u"GPT-5 mini"_s, u"Balanced"_s},
        {u"gpt-5-nano"_s, u"GPT-5 nano"_s, u"Lowest cost"_s},
        {u"gpt-4o"_s, u"GPT-4o"_s, u"General multimodal"_s},
    };
    const QList<ProviderModelOption> anthropic{
        {u"claude-opus-4-1-20250805"_s, u"Claude Opus 4.1"_s, u"Highest quality"_s},
        {u"claude-sonnet-4-5"_s, u"Claude Sonnet 4.5"_s, u"Balanced"_s},
        {u"claude-3-5-haiku-latest"_s, u"Claude Haiku 3.5"_s, u"Lowest cost"_s},
    };
    const QList<ProviderModelOption> gemini{
        {u"gemini-2.5-pro"_s, u"Gemini 2.5 Pro"_s, u"Highest quality"_s},
        {u"gemini-2.5-flash"_s, u"Gemini 2.5 Flash"_s, u"Balanced"_s},
        {u"gemini-2.5-flash-lite"_s, u"Gemini 2.5 Flash-Lite"_s, u"Lowest cost"_s},
    };
    EXPECT_EQ(openAIModels(), openAI);
    EXPECT_EQ(anthropicModels(), anthropic);
    EXPECT_EQ(geminiModels(), gemini);
}

TEST(ProviderModels, eachCloudEngineOffersItsListAndItsDefaultStandsInIt)
{
    EXPECT_EQ(providerModels(AIProvider::OpenAI), openAIModels());
    EXPECT_EQ(providerModels(AIProvider::Anthropic), anthropicModels());
    EXPECT_EQ(providerModels(AIProvider::Gemini), geminiModels());
    for (const AIProvider provider : allProviders()) {
        const auto &models = providerModels(provider);
        const QString defaultID = defaultModelID(defaultProviderSettings(), provider);
        EXPECT_EQ(models.isEmpty(), defaultID.isEmpty());
        const bool offered = std::any_of(models.begin(), models.end(),
            [&](const ProviderModelOption &model) { return model.id == defaultID; });
        EXPECT_EQ(offered, !models.isEmpty());
    }
}

} // namespace velarc
