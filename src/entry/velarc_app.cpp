#include "entry/velarc_app.h"

#include "engines/anthropic_service.h"
#include "engines/gemini_service.h"
#include "engines/http_client.h"
#include "engines/keychain_credential_store.h"
#include "engines/on_device_services.h"
#include "engines/openai_service.h"
#include "intake/pdf_export.h"
#include "run/windowless_seams.h"
#include "system_actions/calendar_store_choice.h"
#include "system_actions/compose_service.h"
#include "system_actions/orchestrator.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

void addEngines(AppServices &services)
{
    const auto http = std::make_shared<HttpClient>();
    services.openAIService = std::make_shared<OpenAIService>(http, services.clock);
    services.geminiService = std::make_shared<GeminiService>(http, services.clock);
    services.anthropicService = std::make_shared<AnthropicService>(http, services.clock);
    services.onDeviceModel = absentOnDeviceModel();
    services.appleIntelligenceService =
        std::make_shared<AppleIntelligenceService>(services.onDeviceModel);
    services.appleImageService = std::make_shared<AppleImageService>();
}

std::shared_ptr<SystemActionExecuting> systemActions(const std::shared_ptr<const Clock> &clock)
{
    return std::make_shared<SystemActionOrchestrator>(
        std::make_shared<CalendarActionService>(makeCalendarStore(), clock),
        std::make_shared<CommunicationComposeService>(), clock);
}

} // namespace

AppServices makeServices(std::shared_ptr<const LocalStore> store)
{
    AppServices services;
    services.clock = std::make_shared<SystemClock>();
    services.scope = std::make_shared<TaskScope>();
    services.store = std::move(store);
    addEngines(services);
    services.credentialStore = std::make_shared<KeychainCredentialStore>(u"com.tolmar.velarc"_s);
    const auto clipboard = std::make_shared<EmptyClipboard>();
    services.clipboard = clipboard;
    services.clipboardText = clipboard;
    services.clipboardWriting = clipboard;
    services.files = std::make_shared<NoFiles>();
    services.pdfExport = std::make_shared<PdfExport>();
    services.systemActions = systemActions(services.clock);
    return services;
}

VelarcApp::VelarcApp(AppServices services) : m_scope(services.scope)
{
    m_viewModel = std::make_unique<AppViewModel>(std::move(services));
}

VelarcApp::~VelarcApp()
{
    m_scope->finish();
}

} // namespace velarc
