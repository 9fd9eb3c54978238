#pragma once

// Which actions a desktop search means.

#include "actions/action.h"

#include <QStringList>

namespace velarc {

struct ActionHit
{
    AIAction action;
    double relevance = 0; // 1 where the query is the action's name, less for less
};

// The actions of which every term of the query stands in the name or in a skill, or is a word, or
// the beginning of one, of the phrases "Run action in Velarc" and "Use Velarc action". Phrases
// alone find every action, once they name the program or speak of an action. Case and accents do
// not count. Actions keep their order; no terms find none. Pure; any thread.
[[nodiscard]] QList<ActionHit> searchActions(
    const QList<AIAction> &actions, const QStringList &terms);

// One line about an action under its name: its skills, or what choosing it does.
[[nodiscard]] QString searchSubtitle(const AIAction &action);

} // namespace velarc
