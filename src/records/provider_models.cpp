#include "records/provider_models.h"

namespace velarc {

using namespace Qt::StringLiterals;

const QList<ProviderModelOption> &openAIModels()
{
    static const QList<ProviderModelOption> kModels{
        {u"gpt-5"_s, u"GPT-5"_s, u"Highest quality"_s},
        {u"gpt-5-mini"_s, u"GPT-5 mini"_s, u"Balanced"_s},
        {u"gpt-5-nano"_s, u"GPT-5 nano"_s, u"Lowest cost"_s},
        {u"gpt-4o"_s, u"GPT-4o"_s, u"General multimodal"_s},
    };
    return kModels;
}

const QList<ProviderModelOption> &anthropicModels()
{
    static const QList<ProviderModelOption> kModels{
        {u"claude-opus-4-1-20250805"_s, u"Claude Opus 4.1"_s, u"Highest quality"_s},
        {u"claude-sonnet-4-5"_s, u"Claude Sonnet 4.5"_s, u"Balanced"_s},
        {u"claude-3-5-haiku-latest"_s, u"Claude Haiku 3.5"_s, u"Lowest cost"_s},
    };
    return kModels;
}

const QList<ProviderModelOption> &geminiModels()
{
    static const QList<ProviderModelOption> kModels{
        {u"gemini-2.5-pro"_s, u"Gemini 2.5 Pro"_s, u"Highest quality"_s},
        {u"gemini-2.5-flash"_s, u"Gemini 2.5 Flash"_s, u"Balanced"_s},
        {u"gemini-2.5-flash-lite"_s, u"Gemini 2.5 Flash-Lite"_s, u"Lowest cost"_s},
    };
    return kModels;
}

const QList<ProviderModelOption> &providerModels(AIProvider provider)
{
    static const QList<ProviderModelOption> kNone;
    switch (provider) {
    case AIProvider::OpenAI:
        return openAIModels();
    case AIProvider::Anthropic:
        return anthropicModels();
    case AIProvider::Gemini:
        return geminiModels();
    case AIProvider::UseDefault:
    case AIProvider::AppleIntelligence:
    case AIProvider::LocalFallback:
        break;
    }
    return kNone;
}

} // namespace velarc
