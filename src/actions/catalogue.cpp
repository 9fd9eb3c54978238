#include "actions/catalogue.h"

#include "actions/catalogue_table.h"
#include "actions/format_rules.h"
#include "base/text.h"
#include "base/uuid.h"

#include <QSet>

#include <algorithm>
#include <array>

namespace velarc {

namespace {

constexpr qint64 kOrderStep = 10;

// A built-in action that earlier versions shipped under another name.
struct Renaming
{
    std::variant<OutputDestination, SystemDestinationKind> destination;
    std::u16string_view oldName;
    std::u16string_view newName;
};

constexpr std::array kRenamings{
    Renaming{SystemDestinationKind::MailCompose, u"Compose Email", u"Compose Email (Mail App)"},
    Renaming{OutputDestination::ShowInApp, u"Email Reply Draft", u"Draft Email Reply"},
};

QStringView view(std::u16string_view text)
{
    return QStringView(text.data(), text.size());
}

struct ToDestination
{
    ActionDestination operator()(OutputDestination value) const
    {
        return ActionDestination::output(value);
    }
    ActionDestination operator()(SystemDestinationKind value) const
    {
        return ActionDestination::system(value);
    }
};

AIAction actionOf(const BuiltInAction &row)
{
    AIAction action;
    action.id = newUuid();
    action.name = view(row.name).toString();
    action.icon = view(row.icon).toString();
    action.colorHex = view(row.colorHex).toString();
    action.systemPrompt = view(row.prompt).toString();
    action.provider = row.provider;
    action.outputFormat = row.format;
    action.destination = std::visit(ToDestination(), row.destination);
    for (const std::u16string_view skill : row.skills) {
        if (!skill.empty()) {
            action.skills.append(view(skill).toString());
        }
    }
    action.isPinned = row.isPinned;
    action.sortOrder = row.sortOrder;
    return action;
}

void renameIfOfEarlierVersion(AIAction &action)
{
    for (const Renaming &renaming : kRenamings) {
        if (action.name == view(renaming.oldName)
            && action.destination == std::visit(ToDestination(), renaming.destination)) {
            action.name = view(renaming.newName).toString();
            return;
        }
    }
}

} // namespace

QList<AIAction> builtInActions()
{
    QList<AIAction> actions;
    for (const BuiltInAction &row : catalogueTable()) {
        actions.append(actionOf(row));
    }
    return actions;
}

QList<AIAction> mergeWithCatalogue(QList<AIAction> stored)
{
    QSet<QString> names;
    names.reserve(stored.size());
    for (AIAction &action : stored) {
        renameIfOfEarlierVersion(action);
        names.insert(foldedToLower(action.name));
    }
    for (const BuiltInAction &row : catalogueTable()) {
        if (!names.contains(foldedToLower(view(row.name)))) {
            stored.append(actionOf(row));
        }
    }
    return stored;
}

QList<AIAction> assignSortOrdersIfNeeded(QList<AIAction> actions)
{
    const bool hasOrders = std::any_of(actions.cbegin(), actions.cend(),
        [](const AIAction &action) { return action.sortOrder != 0; });
    if (hasOrders) {
        return actions;
    }
    qint64 order = 0;
    for (AIAction &action : actions) {
        order += kOrderStep;
        action.sortOrder = order;
    }
    return actions;
}

QList<AIAction> withFormatsRepaired(QList<AIAction> actions)
{
    for (AIAction &action : actions) {
        action.outputFormat = formatForDestination(action.outputFormat, action.destination);
    }
    return actions;
}

QList<AIAction> reconciledWithCatalogue(QList<AIAction> stored)
{
    return withFormatsRepaired(assignSortOrdersIfNeeded(mergeWithCatalogue(std::move(stored))));
}

} // namespace velarc
