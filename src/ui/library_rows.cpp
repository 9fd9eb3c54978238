#include "ui/library_rows.h"

#include "actions/action_list.h"
#include "base/text.h"
#include "base/uuid.h"
#include "ui/action_look.h"

#include <QSet>
#include <QStringMatcher>

namespace velarc {

using namespace Qt::StringLiterals;

QString engineTag(AIProvider provider)
{
    switch (provider) {
    case AIProvider::UseDefault:
        return u"Default"_s;
    case AIProvider::AppleIntelligence:
        return u"Apple"_s;
    case AIProvider::OpenAI:
        return u"OpenAI"_s;
    case AIProvider::Gemini:
        return u"Gemini"_s;
    case AIProvider::Anthropic:
        return u"Anthropic"_s;
    case AIProvider::LocalFallback:
        return u"Local"_s;
    }
    Q_UNREACHABLE();
}

LibraryIndex::LibraryIndex(const QList<AIAction> &actions)
{
    const QList<AIAction> shown = sortedForDisplay(visibleActions(actions));
    m_entries.reserve(shown.size());
    for (const AIAction &action : shown) {
        Entry entry;
        entry.id = action.id;
        entry.row = {{}, uuidText(action.id), action.name, action.icon,
            displayColor(action.colorHex), engineTag(action.provider), action.isPinned, false};
        entry.foldedName = foldedToLower(action.name);
        entry.foldedPrompt = foldedToLower(action.systemPrompt);
        entry.foldedSkills = foldedToLower(action.skills.join(u' '));
        m_entries.append(std::move(entry));
    }
}

QList<const LibraryIndex::Entry *> LibraryIndex::matching(QStringView query) const
{
    const QString wanted = foldedToLower(trimmed(query));
    const QStringMatcher matcher(wanted);
    const auto holds = [&](const QString &text) { return matcher.indexIn(text) >= 0; };
    QList<const Entry *> found;
    found.reserve(m_entries.size());
    for (const Entry &entry : m_entries) {
        if (wanted.isEmpty() || holds(entry.foldedName) || holds(entry.foldedPrompt)
            || holds(entry.foldedSkills)) {
            found.append(&entry);
        }
    }
    return found;
}

QList<LibraryRow> LibraryIndex::rows(
    QStringView query, const QList<QUuid> &recentIDs, const std::optional<QUuid> &chosenID) const
{
    const QList<const Entry *> found = matching(query);
    QList<LibraryRow> rows;
    rows.reserve(found.size());
    const auto append = [&](const Entry &entry, const QString &section) {
        rows.append(entry.row);
        rows.last().section = section;
        rows.last().isChosen = entry.id == chosenID;
    };
    for (const Entry *entry : found) {
        if (entry->row.isPinned) {
            append(*entry, u"Pinned"_s);
        }
    }
    QSet<QUuid> recent;
    for (const QUuid &id : recentIDs) {
        const auto match = std::find_if(
            found.begin(), found.end(), [&](const Entry *entry) { return entry->id == id; });
        if (match != found.end() && !(*match)->row.isPinned && !recent.contains(id)) {
            recent.insert(id);
            append(**match, u"Recent"_s);
        }
    }
    for (const Entry *entry : found) {
        if (!entry->row.isPinned && !recent.contains(entry->id)) {
            append(*entry, u"All Actions"_s);
        }
    }
    return rows;
}

} // namespace velarc
