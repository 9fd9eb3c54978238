#pragma once

// The one state object with its operations: what the screens, the command line and the desktop
// services call. It forwards to the classes that do the work and decides nothing itself.
//
// Main thread only. Built once a process, or once for each run outside the window.

#include "engines/on_device_model.h"
#include "run/action_library.h"
#include "run/app_state.h"
#include "run/canvas_events.h"
#include "run/connections.h"
#include "run/provider_router.h"
#include "run/result_delivery.h"
#include "run/run_pipeline.h"
#include "run/usage_recorder.h"

#include <memory>

namespace velarc {

// Everything that the state object stands on. It is handed over for the object's whole life.
struct AppServices
{
    std::shared_ptr<Clock> clock;
    std::shared_ptr<TaskScope> scope;
    std::shared_ptr<const LocalStore> store;
    std::shared_ptr<OpenAIServing> openAIService;
    std::shared_ptr<GeminiServing> geminiService;
    std::shared_ptr<AnthropicServing> anthropicService;
    std::shared_ptr<AppleIntelligenceServing> appleIntelligenceService;
    std::shared_ptr<AppleImageServing> appleImageService;
    std::shared_ptr<OnDeviceModel> onDeviceModel;
    std::shared_ptr<CredentialStore> credentialStore;
    std::shared_ptr<ClipboardReading> clipboard;
    std::shared_ptr<ClipboardTextSeen> clipboardText;
    std::shared_ptr<ClipboardWriting> clipboardWriting;
    std::shared_ptr<FileIntake> files;
    std::shared_ptr<PdfExporting> pdfExport;
    std::shared_ptr<SystemActionExecuting> systemActions;
};

class AppViewModel final : public AppState
{
    Q_OBJECT

public:
    // Runs the start-up steps: the object is complete when the constructor returns.
    explicit AppViewModel(AppServices services, QObject *parent = nullptr);

    // Runs in flight are stopped and end without touching anything.
    ~AppViewModel() override;

    [[nodiscard]] Instant now() const { return m_services.clock->now(); }

    // Runs.
    Q_INVOKABLE void runSelectedAction() { m_pipeline->runSelectedAction(); }
    Q_INVOKABLE void cancelRun() { m_pipeline->cancelRun(); }
    Q_INVOKABLE void returnToInput() { m_pipeline->returnToInput(); }
    Q_INVOKABLE void restart() { m_pipeline->restart(); }
    Q_INVOKABLE void runRefine() { m_pipeline->runRefine(); }
    Q_INVOKABLE void retryRun() { m_pipeline->retryRun(); }
    void copyText(const QString &text) { m_services.clipboardWriting->writeText(text); }
    Q_INVOKABLE void copyResult() { m_delivery->copyResult(); }
    [[nodiscard]] QCoro::Task<std::optional<QUrl>> shareableFileURL(std::stop_token stop);
    void startRun(AIAction action, InputStrategy strategy);
    [[nodiscard]] QCoro::Task<ResultPayload> runForShortcut(
        AIAction action, QString input, std::stop_token stop);
    [[nodiscard]] QCoro::Task<ShortcutRun> runForShortcutInDetail(
        AIAction action, QString input, std::stop_token stop); // with the engine that ran

    // The canvas, and what other programs hand over.
    [[nodiscard]] CanvasEvents &canvas() { return *m_canvas; }
    void handleOpenURL(const QUrl &url);

    // The library.
    [[nodiscard]] ActionLibrary &library() { return *m_library; }
    [[nodiscard]] const ActionLibrary &library() const { return *m_library; }
    [[nodiscard]] QString routingSummary(const AIAction &action) const;
    [[nodiscard]] AIProvider resolvedProvider(const AIAction &action) const;
    [[nodiscard]] std::optional<QString> resolvedModel(const AIAction &action) const;

    [[nodiscard]] Connections &connections() { return *m_connections; }
    [[nodiscard]] const Connections &connections() const { return *m_connections; }

    // Ends what runs beside the runs; a screen's own tasks enter it.
    [[nodiscard]] TaskScope &tasks() { return *m_services.scope; }

    Q_INVOKABLE void resetUsage() { m_usage->resetUsage(); }

    // For the waits and the work of whoever shows this object.
    [[nodiscard]] const std::shared_ptr<Clock> &clock() const { return m_services.clock; }
    [[nodiscard]] const std::shared_ptr<TaskScope> &scope() const { return m_services.scope; }

private:
    AppServices m_services;
    std::shared_ptr<ActionLibrary> m_library;
    std::shared_ptr<UsageRecorder> m_usage;
    std::shared_ptr<ProviderRouter> m_router;
    std::shared_ptr<Connections> m_connections;
    std::shared_ptr<ResultDelivery> m_delivery;
    std::unique_ptr<RunPipeline> m_pipeline; // goes before the others: it stops what uses them
    std::unique_ptr<CanvasEvents> m_canvas;
};

} // namespace velarc
