#include "records/provider_settings.h"

#include "actions/action_json.h"
#include "base/text.h"

#include <algorithm>
#include <array>

namespace velarc {

namespace {

// A cloud engine's default model: where it stands and under which key.
struct ModelField
{
    AIProvider provider;
    QString ProviderSettings::*field;
    const char *key;
};

constexpr std::array kModelFields{
    ModelField{AIProvider::OpenAI, &ProviderSettings::defaultOpenAIModelID, "defaultOpenAIModelID"},
    ModelField{AIProvider::Gemini, &ProviderSettings::defaultGeminiModelID, "defaultGeminiModelID"},
    ModelField{AIProvider::Anthropic, &ProviderSettings::defaultAnthropicModelID,
        "defaultAnthropicModelID"},
};

const ModelField *modelField(AIProvider provider)
{
    const auto found = std::find_if(kModelFields.begin(), kModelFields.end(),
        [provider](const ModelField &candidate) { return candidate.provider == provider; });
    return found == kModelFields.end() ? nullptr : &*found;
}

QString trimmedOrDefault(QStringView modelID, const ModelField &model)
{
    const QStringView kept = trimmed(modelID);
    return kept.isEmpty() ? defaultProviderSettings().*(model.field) : kept.toString();
}

} // namespace

ProviderSettings defaultProviderSettings()
{
    return {};
}

ProviderSettings decodeProviderSettings(const Json &value)
{
    const ObjectReader object(value);
    ProviderSettings settings = defaultProviderSettings();
    settings.defaultProvider =
        readEnum<AIProvider>(object, "defaultProvider").value_or(settings.defaultProvider);
    for (const ModelField &model : kModelFields) {
        QString &field = settings.*(model.field);
        field = object.text(model.key).value_or(field);
    }
    if (object.find("defaultOpenAIModelID") == nullptr) {
        settings.defaultOpenAIModelID =
            object.text("defaultModel").value_or(settings.defaultOpenAIModelID);
    }
    settings.enableAppleIntelligence =
        object.boolean("enableAppleIntelligence").value_or(settings.enableAppleIntelligence);
    settings.appleUseCase = object.text("appleUseCase").value_or(settings.appleUseCase);
    if (const auto key = object.text("openAIAPIKey")) {
        settings.legacyOpenAIAPIKey = trimmed(*key).toString();
    }
    return settings;
}

Json encodeProviderSettings(const ProviderSettings &settings)
{
    Json object = Json::object();
    object["defaultProvider"] = jsonFromText(storedSpelling(settings.defaultProvider));
    for (const ModelField &model : kModelFields) {
        object[model.key] = jsonFromText(settings.*(model.field));
    }
    object["enableAppleIntelligence"] = settings.enableAppleIntelligence;
    object["appleUseCase"] = jsonFromText(settings.appleUseCase);
    return object;
}

QString defaultModelID(const ProviderSettings &settings, AIProvider provider)
{
    const ModelField *model = modelField(provider);
    return model == nullptr ? QString() : trimmedOrDefault(settings.*(model->field), *model);
}

ProviderSettings setDefaultModelID(
    ProviderSettings settings, AIProvider provider, QStringView modelID)
{
    if (const ModelField *model = modelField(provider)) {
        settings.*(model->field) = trimmedOrDefault(modelID, *model);
    }
    return settings;
}

} // namespace velarc
