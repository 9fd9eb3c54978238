#pragma once

// The global engine defaults, as the user set them. API keys are no part of them.
//
// A plain value with pure functions; any thread.

#include "actions/action.h"
#include "base/json.h"

#include <QString>

#include <optional>

namespace velarc {

struct ProviderSettings
{
    AIProvider defaultProvider = AIProvider::AppleIntelligence;
    QString defaultOpenAIModelID = QStringLiteral("gpt-5");
    QString defaultGeminiModelID = QStringLiteral("gemini-2.5-flash");
    QString defaultAnthropicModelID = QStringLiteral("claude-opus-4-1-20250805");
    bool enableAppleIntelligence = true;

    // "contentTagging", or any other text for the general use case.
    QString appleUseCase = QStringLiteral("general");

    // An API key that an older version kept here, trimmed; it may be empty. Never written.
    std::optional<QString> legacyOpenAIAPIKey;

    friend bool operator==(const ProviderSettings &, const ProviderSettings &) = default;
};

// What holds until the user sets something.
[[nodiscard]] ProviderSettings defaultProviderSettings();

// Every key may be missing and then takes its default. The legacy key "defaultModel" is looked at
// only where "defaultOpenAIModelID" is missing.
//
// Errors: JsonError for a key of the wrong type or with an unknown spelling.
[[nodiscard]] ProviderSettings decodeProviderSettings(const Json &value);

// Writes six keys in the order of the fields; the legacy key is left out.
[[nodiscard]] Json encodeProviderSettings(const ProviderSettings &settings);

// The default model of a cloud engine, trimmed: the literal default if the field is blank. Empty
// for the other providers.
[[nodiscard]] QString defaultModelID(const ProviderSettings &settings, AIProvider provider);

// `settings` with `modelID`, trimmed, as the default model of a cloud engine; a blank one stands
// for the literal default. For the other providers nothing changes.
[[nodiscard]] ProviderSettings setDefaultModelID(
    ProviderSettings settings, AIProvider provider, QStringView modelID);

} // namespace velarc
