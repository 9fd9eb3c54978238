#pragma once

// Which action somebody means by what they typed.

#include "entry/offered_actions.h"

#include <variant>

namespace velarc {

struct NoSuchAction
{
};

// The typed title fits several actions, and none of them exactly.
struct AmbiguousAction
{
    QList<VelarcActionEntity> candidates;
};

using ActionLookup = std::variant<QUuid, NoSuchAction, AmbiguousAction>;

// A UUID stands for itself, whether or not an action has it. Any other text is a title: one action
// of exactly that title, else one whose title differs in case alone.
[[nodiscard]] ActionLookup lookUpAction(
    const QList<VelarcActionEntity> &offered, const QString &typed);

} // namespace velarc
