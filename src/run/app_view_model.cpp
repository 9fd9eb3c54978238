#include "run/app_view_model.h"

#include "base/worker.h"
#include "run/share_handoff.h"
#include "run/start_up.h"

#include <utility>

namespace velarc {

namespace {

EngineServices engineServicesOf(const AppServices &services)
{
    EngineServices engines;
    engines.clock = services.clock;
    engines.credentialStore = services.credentialStore;
    engines.openAIService = services.openAIService;
    engines.geminiService = services.geminiService;
    engines.anthropicService = services.anthropicService;
    engines.appleIntelligenceService = services.appleIntelligenceService;
    engines.appleImageService = services.appleImageService;
    engines.localWorker = std::make_shared<SerialWorker>();
    return engines;
}

ConnectionServices connectionServicesOf(
    const AppServices &services, std::shared_ptr<ActionLibrary> library)
{
    ConnectionServices connections;
    connections.clock = services.clock;
    connections.store = services.store;
    connections.credentialStore = services.credentialStore;
    connections.openAIService = services.openAIService;
    connections.geminiService = services.geminiService;
    connections.anthropicService = services.anthropicService;
    connections.onDeviceModel = services.onDeviceModel;
    connections.library = std::move(library);
    connections.scope = services.scope;
    return connections;
}

DeliveryServices deliveryServicesOf(const AppServices &services)
{
    DeliveryServices delivery;
    delivery.clock = services.clock;
    delivery.clipboard = services.clipboardWriting;
    delivery.pdfExport = services.pdfExport;
    delivery.systemActions = services.systemActions;
    delivery.scope = services.scope;
    return delivery;
}

CanvasServices canvasServicesOf(const AppServices &services, std::shared_ptr<ActionLibrary> library)
{
    CanvasServices canvas;
    canvas.clipboard = services.clipboard;
    canvas.clipboardText = services.clipboardText;
    canvas.files = services.files;
    canvas.selection = std::move(library);
    canvas.scope = services.scope;
    return canvas;
}

} // namespace

AppViewModel::AppViewModel(AppServices services, QObject *parent)
    : AppState(parent)
    , m_services(std::move(services))
    , m_library(std::make_shared<ActionLibrary>(
          *this, LibraryServices{m_services.store, m_services.clock, m_services.scope}))
    , m_usage(std::make_shared<UsageRecorder>(*this, m_services.store, m_services.clock))
    , m_router(std::make_shared<ProviderRouter>(*this, engineServicesOf(m_services)))
    , m_connections(
          std::make_shared<Connections>(*this, connectionServicesOf(m_services, m_library)))
    , m_delivery(std::make_shared<ResultDelivery>(*this, deliveryServicesOf(m_services)))
{
    RunSeams seams;
    seams.clock = m_services.clock;
    seams.generating = m_router;
    seams.delivering = m_delivery;
    seams.clipboard = m_services.clipboard;
    seams.selection = m_library;
    seams.usage = m_usage;
    seams.scope = m_services.scope;
    m_pipeline = std::make_unique<RunPipeline>(*this, std::move(seams));
    m_canvas =
        std::make_unique<CanvasEvents>(*this, *m_pipeline, canvasServicesOf(m_services, m_library));
    startUp({*this, *m_services.store, *m_services.clock, *m_connections, *m_usage});
}

AppViewModel::~AppViewModel() = default;

void AppViewModel::startRun(AIAction action, InputStrategy strategy)
{
    m_pipeline->startRun(std::move(action), std::move(strategy));
}

QCoro::Task<std::optional<QUrl>> AppViewModel::shareableFileURL(std::stop_token stop)
{
    return m_delivery->shareableFileURL(std::move(stop));
}

void AppViewModel::handleOpenURL(const QUrl &url)
{
    velarc::handleOpenURL(url, {*this, *m_services.store, *m_library, *m_pipeline});
}

QCoro::Task<ResultPayload> AppViewModel::runForShortcut(
    AIAction action, QString input, std::stop_token stop)
{
    ShortcutRun run =
        co_await m_pipeline->runForShortcut(std::move(action), std::move(input), std::move(stop));
    co_return std::move(run.payload);
}

QCoro::Task<ShortcutRun> AppViewModel::runForShortcutInDetail(
    AIAction action, QString input, std::stop_token stop)
{
    return m_pipeline->runForShortcut(std::move(action), std::move(input), std::move(stop));
}

QString AppViewModel::routingSummary(const AIAction &action) const
{
    return velarc::routingSummary(action, *m_router);
}

AIProvider AppViewModel::resolvedProvider(const AIAction &action) const
{
    return m_router->resolvedProvider(action);
}

std::optional<QString> AppViewModel::resolvedModel(const AIAction &action) const
{
    return m_router->resolvedModel(action, m_router->resolvedProvider(action));
}

} // namespace velarc
