#pragma once

// What the window remembers of itself: the selection, the one-shot hints, the open section of the
// Engine Room, and the home screen's options.
//
// Plain values; any thread.

#include "actions/action.h"
#include "base/json.h"

#include <QList>
#include <QUuid>

#include <optional>

namespace velarc {

enum class EngineRoomSection
{
    Connections,
    DefaultEngine,
    Advanced
};

[[nodiscard]] const QList<EngineRoomSection> &allEngineRoomSections();
[[nodiscard]] QString storedSpelling(EngineRoomSection section);
template <> std::optional<EngineRoomSection> fromStoredSpelling(QStringView spelling);

struct HomeHintState
{
    bool hasSeenRunClipboardHint = false;
    bool hasSeenMoreMenuHint = false;
    bool hasSeenChangeActionHint = false;

    friend bool operator==(const HomeHintState &, const HomeHintState &) = default;
};

struct HomeLayoutState
{
    std::optional<QUuid> selectedActionID;
    HomeHintState hintState;
    EngineRoomSection lastEngineRoomSection = EngineRoomSection::Connections;
    QList<QUuid> recentActionIDs; // most recent first

    friend bool operator==(const HomeLayoutState &, const HomeLayoutState &) = default;
};

struct HomeAutomationOptions
{
    bool autoRunOnPaste = true;
    bool autoCopyResult = false;

    friend bool operator==(const HomeAutomationOptions &, const HomeAutomationOptions &) = default;
};

// Every key of the layout may be missing and then takes its default, but hints that are there must
// tell all three.
//
// Errors: JsonError for a key of the wrong type or with an unknown spelling, and for a missing
// hint.
[[nodiscard]] HomeLayoutState decodeHomeLayout(const Json &value);

// Writes the selection only if there is one, and the other keys always.
[[nodiscard]] Json encodeHomeLayout(const HomeLayoutState &layout);

// Each key may be missing and then takes its default. The key "autoRunOnDrop" of an older form is
// not looked at.
//
// Errors: JsonError for a key of the wrong type.
[[nodiscard]] HomeAutomationOptions decodeAutomationOptions(const Json &value);
[[nodiscard]] Json encodeAutomationOptions(const HomeAutomationOptions &options);

} // namespace velarc
