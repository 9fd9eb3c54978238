#include "ui/studio_rules.h"

#include "actions/format_rules.h"
#include "base/text.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

bool hasModels(AIProvider provider)
{
    return !providerModels(provider).isEmpty();
}

} // namespace

AIAction settledDraft(AIAction draft, const ProviderSettings &settings)
{
    if (!hasModels(draft.provider)) {
        draft.modelOverrideID.reset();
    } else if (isBlank(draft.modelOverrideID.value_or(QString()))) {
        draft.modelOverrideID = defaultModelID(settings, draft.provider);
    }
    draft.outputFormat = normalisedFormat(draft.outputFormat, draft.provider, draft.destination);
    return draft;
}

QString modelTag(AIProvider provider)
{
    return provider == AIProvider::UseDefault ? u"Global Default"_s : u"Action Override"_s;
}

QString globalDefaultNote(const ProviderSettings &settings)
{
    const AIProvider provider = settings.defaultProvider;
    switch (provider) {
    case AIProvider::UseDefault:
        return u"Global default is not set."_s;
    case AIProvider::AppleIntelligence:
        return u"Global default is Apple Intelligence for private on-device generation."_s;
    case AIProvider::LocalFallback:
        return u"Global default is the Local Preview Engine."_s;
    case AIProvider::OpenAI:
    case AIProvider::Gemini:
    case AIProvider::Anthropic:
        return u"Global default is "_s + label(provider) + u" ("_s
            + defaultModelID(settings, provider)
            + u"). New and default actions use this automatically."_s;
    }
    Q_UNREACHABLE();
}

QString engineStatusLine(AIProvider provider, const QString &connectionStatus)
{
    switch (provider) {
    case AIProvider::UseDefault:
        return u"Use Engine Room default"_s;
    case AIProvider::AppleIntelligence:
        return u"On-device private generation"_s;
    case AIProvider::LocalFallback:
        return u"Always available"_s;
    case AIProvider::OpenAI:
    case AIProvider::Gemini:
    case AIProvider::Anthropic:
        return connectionStatus;
    }
    Q_UNREACHABLE();
}

QString modelPickerTitle(AIProvider provider)
{
    return hasModels(provider) ? label(provider) + u" model"_s : QString();
}

QString modelRowText(const ProviderModelOption &model)
{
    return model.title + u" - "_s + model.subtitle;
}

QList<OutputFormat> offeredFormats(AIProvider provider, const ActionDestination &destination)
{
    QList<OutputFormat> offered;
    std::copy_if(allOutputFormats().begin(), allOutputFormats().end(), std::back_inserter(offered),
        [&](OutputFormat format) { return isFormatAllowed(format, provider, destination); });
    return offered;
}

QString formatNote(AIProvider provider, const ActionDestination &destination)
{
    if (destination.isSystem()) {
        return u"App destinations support Text and Markdown output only."_s;
    }
    if (provider == AIProvider::Gemini) {
        return u"Gemini supports text output only in this release. Choose Text, Markdown, JSON, or "
               u"PDF."_s;
    }
    if (provider == AIProvider::Anthropic) {
        return u"Claude supports text output only. Choose Text, Markdown, JSON, or PDF."_s;
    }
    return {};
}

QList<ActionDestination> offeredDestinations()
{
    QList<ActionDestination> offered;
    for (const OutputDestination destination : allOutputDestinations()) {
        offered.append(ActionDestination::output(destination));
    }
    for (const SystemDestinationKind kind : visibleSystemKinds()) {
        offered.append(ActionDestination::system(kind));
    }
    return offered;
}

QStringList promptVariables()
{
    return {u"{User_Input}"_s, u"{Current_Date}"_s, u"{Clipboard}"_s};
}

QString withVariable(const QString &prompt, const QString &variable)
{
    return prompt.isEmpty() ? variable : prompt + u'\n' + variable;
}

QStringList symbolCompletions(QStringView typed, const QStringList &known)
{
    const QString wanted = foldedToLower(trimmed(typed));
    if (known.contains(wanted)) {
        return {};
    }
    QStringList beginning;
    QStringList holding;
    for (const QString &name : known) {
        if (name.startsWith(wanted)) {
            beginning.append(name);
        } else if (name.contains(wanted)) {
            holding.append(name);
        }
    }
    return beginning + holding;
}

} // namespace velarc
