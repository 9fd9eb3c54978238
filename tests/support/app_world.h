#pragma once

// A whole state object over a store in memory and scripted engines, as a test wants them.

#include "actions/catalogue.h"
#include "fakes/fake_clock.h"
#include "fakes/memory_credential_store.h"
#include "fakes/scripted_desktop.h"
#include "fakes/scripted_engines.h"
#include "fakes/scripted_seams.h"
#include "run/app_view_model.h"
#include "store/memory_defaults_domain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class AppWorld : public ::testing::Test
{
protected:
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<MemoryDefaultsDomain> domain = std::make_shared<MemoryDefaultsDomain>();
    std::shared_ptr<const LocalStore> store =
        std::make_shared<const LocalStore>(domain, &builtInActions);
    std::shared_ptr<ScriptedOpenAI> openAI = std::make_shared<ScriptedOpenAI>();
    std::shared_ptr<ScriptedGemini> gemini = std::make_shared<ScriptedGemini>();
    std::shared_ptr<ScriptedAnthropic> anthropic = std::make_shared<ScriptedAnthropic>();
    std::shared_ptr<ScriptedOnDevice> onDevice = std::make_shared<ScriptedOnDevice>();
    std::shared_ptr<ScriptedOnDeviceImages> onDeviceImages =
        std::make_shared<ScriptedOnDeviceImages>();
    std::shared_ptr<ScriptedOnDeviceModel> model = std::make_shared<ScriptedOnDeviceModel>();
    std::shared_ptr<MemoryCredentialStore> keys = std::make_shared<MemoryCredentialStore>();
    std::shared_ptr<ScriptedClipboard> clipboard = std::make_shared<ScriptedClipboard>();
    std::shared_ptr<FixedClipboardText> clipboardText = std::make_shared<FixedClipboardText>();
    std::shared_ptr<RecordedClipboard> copied = std::make_shared<RecordedClipboard>();
    std::shared_ptr<ScriptedFiles> files = std::make_shared<ScriptedFiles>();
    std::shared_ptr<ScriptedPdfExport> pdfExport = std::make_shared<ScriptedPdfExport>();
    std::shared_ptr<ScriptedSystemActions> systemActions =
        std::make_shared<ScriptedSystemActions>();
    std::shared_ptr<TaskScope> scope = std::make_shared<TaskScope>();
    std::unique_ptr<AppViewModel> viewModel;

    AppWorld()
    {
        openAI->answer.result = answerOf(AIProvider::OpenAI, u"from OpenAI"_s);
        gemini->answer.result = answerOf(AIProvider::Gemini, u"from Gemini"_s);
        anthropic->answer.result = answerOf(AIProvider::Anthropic, u"from Anthropic"_s);
    }

    static GenerationResult answerOf(AIProvider provider, const QString &text)
    {
        GenerationResult result = textResult(text);
        result.provider = provider;
        return result;
    }

    [[nodiscard]] AppServices services() const
    {
        AppServices made;
        made.clock = clock;
        made.scope = scope;
        made.store = store;
        made.openAIService = openAI;
        made.geminiService = gemini;
        made.anthropicService = anthropic;
        made.appleIntelligenceService = onDevice;
        made.appleImageService = onDeviceImages;
        made.onDeviceModel = model;
        made.credentialStore = keys;
        made.clipboard = clipboard;
        made.clipboardText = clipboardText;
        made.clipboardWriting = copied;
        made.files = files;
        made.pdfExport = pdfExport;
        made.systemActions = systemActions;
        return made;
    }

    // Starts the program, again if it runs already.
    AppViewModel &launch()
    {
        viewModel.reset();
        viewModel = std::make_unique<AppViewModel>(services());
        return *viewModel;
    }

    void storeDocument(const char *key, const char *json) { domain->setBytes(key, json); }

    [[nodiscard]] Json storedDocument(const char *key)
    {
        const auto bytes = domain->bytes(key);
        return bytes ? parseJson(*bytes) : Json();
    }

    [[nodiscard]] AIAction actionNamed(const QString &name) const
    {
        for (const AIAction &action : viewModel->actions()) {
            if (action.name == name) {
                return action;
            }
        }
        ADD_FAILURE() << "no action is called " << name.toStdString();
        return {};
    }

    [[nodiscard]] bool hasActionNamed(const QString &name) const
    {
        const auto &actions = viewModel->actions();
        return std::any_of(actions.begin(), actions.end(),
            [&](const AIAction &action) { return action.name == name; });
    }

    [[nodiscard]] QString note() const { return viewModel->statusNote().value_or(QString()); }

    // Through as many pauses as a run has; what a worker does is waited for.
    void letRunGoOn()
    {
        for (int pause = 0; pause < 4; ++pause) {
            turnEventLoop();
            clock->advance(90ms);
        }
        turnEventLoop();
    }
};

inline constexpr const char *kActionsKey = "velarc.actions.v1";
inline constexpr const char *kLayoutKey = "velarc.homeLayout.v1";
inline constexpr const char *kOptionsKey = "velarc.home.automationOptions.v1";
inline constexpr const char *kSettingsKey = "velarc.providerSettings.v1";
inline constexpr const char *kConnectionsKey = "velarc.provider.connections.v1";
inline constexpr const char *kLedgerKey = "velarc.usage.daily.v1";
inline constexpr const char *kPasteMigrationKey = "velarc.migration.homeAutomationPasteV1";
inline constexpr const char *kNewRunKey = "velarc.feature.newRunExperienceEnabled.v1";

} // namespace velarc
