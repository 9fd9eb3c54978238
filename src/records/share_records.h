#pragma once

// What the small sender leaves for the window: work to take up, or a result to show.
//
// Plain values; any thread.

#include "base/clock.h"
#include "base/json.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace velarc {

struct ShareHandoffRequest
{
    std::optional<QUuid> actionID; // the action to continue with
    QString inputText;
    std::optional<QString> sourceApp; // who shared it
    Instant createdAt;

    friend bool operator==(const ShareHandoffRequest &, const ShareHandoffRequest &) = default;
};

struct ShareResult
{
    std::optional<QUuid> actionID; // the action that ran
    QString actionName;
    QString output;
    Instant createdAt;

    friend bool operator==(const ShareResult &, const ShareResult &) = default;
};

// Errors: JsonError for a key of the wrong type, and for a missing one that is not optional.
[[nodiscard]] ShareHandoffRequest decodeShareHandoffRequest(const Json &value);
[[nodiscard]] ShareResult decodeShareResult(const Json &value);

// Optional keys are left out where there is nothing to tell.
[[nodiscard]] Json encodeShareHandoffRequest(const ShareHandoffRequest &request);
[[nodiscard]] Json encodeShareResult(const ShareResult &result);

} // namespace velarc
