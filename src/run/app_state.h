#pragma once

// The published state of the application: every field that a screen shows, and nothing else.
//
// Main thread only. Each field notifies on every write. Screens edit only the fields marked
// EDITABLE; all else is written by the operations of the program. No observer of a field calls an
// operation synchronously. "Kept" fields are in the store as well; who writes them saves them.

#include "actions/action.h"
#include "records/home_layout.h"
#include "records/provider_connections.h"
#include "records/provider_settings.h"
#include "records/run_records.h"
#include "records/usage_ledger.h"
#include "run/published_field.h"

#include <QObject>

#include <optional>

namespace velarc {

enum class AppScreen
{
    Home,
    Actions,
    Settings
};

// The transient message over the canvas. Both fields are set when it is made.
struct ClipboardToast
{
    QUuid id;
    QString message;

    friend bool operator==(const ClipboardToast &, const ClipboardToast &) = default;
};

// The offer to take the last deletion back. Both fields are set when it is made.
struct DeletionNotice
{
    QUuid id;
    QString name; // of the action that was deleted

    friend bool operator==(const DeletionNotice &, const DeletionNotice &) = default;
};

// Whether the on-device model can be used, in the words of the settings screen.
struct AppleIntelligenceStatusSnapshot
{
    bool isAvailable = false;
    QString title;
    QString details;

    friend bool operator==(
        const AppleIntelligenceStatusSnapshot &, const AppleIntelligenceStatusSnapshot &) = default;
};

class AppState : public QObject
{
    Q_OBJECT

    using Actions = QList<AIAction>;
    using Attachments = QList<InputAttachment>;
    using OptionalText = std::optional<QString>;
    using OptionalUuid = std::optional<QUuid>;
    using OptionalProvider = std::optional<AIProvider>;
    using OptionalDebugInfo = std::optional<GenerationDebugInfo>;
    using OptionalToast = std::optional<ClipboardToast>;
    using OptionalDeletion = std::optional<DeletionNotice>;
    using Uuids = QList<QUuid>;

    // The library and the defaults (kept).
    VELARC_PUBLISHED(Actions, actions, Actions) // hidden ones too, in stored order
    VELARC_EDITABLE(ProviderSettings, providerSettings, ProviderSettings)
    VELARC_PUBLISHED(ProviderConnectionState, providerConnections, ProviderConnections)
    VELARC_PUBLISHED(DailyUsageLedger, dailyUsageLedger, DailyUsageLedger)

    VELARC_PUBLISHED(AppScreen, appScreen, AppScreen) // Home for the life of the process

    // The canvas.
    VELARC_EDITABLE(QString, quickInput, QuickInput)
    VELARC_PUBLISHED(Attachments, quickAttachments, QuickAttachments)
    VELARC_PUBLISHED(OptionalText, inputAttachmentNotice, InputAttachmentNotice) // a line each

    // The run.
    VELARC_PUBLISHED(OptionalDebugInfo, latestRunDebugInfo, LatestRunDebugInfo)
    VELARC_PUBLISHED(HomePhase, homePhase, HomePhase)
    VELARC_PUBLISHED(EngineState, engineState, EngineState)
    VELARC_PUBLISHED(QString, activeProviderLabel, ActiveProviderLabel) // "None" when idle
    VELARC_PUBLISHED(OptionalText, statusNote, StatusNote)
    VELARC_PUBLISHED(
        AppleIntelligenceStatusSnapshot, appleIntelligenceStatus, AppleIntelligenceStatus)

    // Selection and layout (kept).
    VELARC_PUBLISHED(OptionalUuid, selectedActionID, SelectedActionID)
    VELARC_PUBLISHED(Uuids, recentActionIDs, RecentActionIDs) // latest first, 8 at most
    VELARC_PUBLISHED(EngineRoomSection, engineRoomSection, EngineRoomSection)
    VELARC_PUBLISHED(bool, newRunExperienceEnabled, NewRunExperienceEnabled)

    // Sheets.
    VELARC_EDITABLE(bool, isMoreSheetPresented, IsMoreSheetPresented)
    VELARC_EDITABLE(bool, isActionLibraryPresented, IsActionLibraryPresented)
    VELARC_EDITABLE(bool, isEngineRoomPresented, IsEngineRoomPresented)
    VELARC_EDITABLE(bool, isUsagePresented, IsUsagePresented)

    VELARC_PUBLISHED(HomeHintState, homeHintState, HomeHintState) // kept
    VELARC_EDITABLE(HomeAutomationOptions, homeAutomationOptions, HomeAutomationOptions) // kept
    VELARC_PUBLISHED(OptionalToast, clipboardToast, ClipboardToast)
    VELARC_PUBLISHED(OptionalDeletion, deletionNotice, DeletionNotice)

    // The action editor.
    VELARC_EDITABLE(bool, isStudioPresented, IsStudioPresented)
    VELARC_EDITABLE(AIAction, studioDraft, StudioDraft)

    // The sheet that asks for input before a run.
    VELARC_EDITABLE(bool, isInputModalPresented, IsInputModalPresented)
    VELARC_EDITABLE(QString, inputModalText, InputModalText)

    // Connections: the engine whose sheet is open, and the one that a failed run offers.
    VELARC_EDITABLE(OptionalProvider, providerConnectSheetProvider, ProviderConnectSheetProvider)
    VELARC_PUBLISHED(OptionalProvider, suggestedConnectionProvider, SuggestedConnectionProvider)

    VELARC_EDITABLE(QString, refinePrompt, RefinePrompt)

public:
    explicit AppState(QObject *parent = nullptr);
    ~AppState() override;
};

} // namespace velarc
