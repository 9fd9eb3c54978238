#include "entry/action_search.h"

#include <algorithm>
#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr double kWholeName = 1.0;
constexpr double kBeginningOfName = 0.9;
constexpr double kInName = 0.8;
constexpr double kInSkill = 0.6;
constexpr double kByPhrase = 0.4;

// What nobody types; further terms are not looked at.
constexpr qsizetype kMostTerms = 32;

// Shorter beginnings of a phrase's words stand in too many other queries.
constexpr qsizetype kShortestBeginning = 3;

constexpr std::array kPhraseWords{"run"_L1, "use"_L1, "in"_L1, "action"_L1, "velarc"_L1};
constexpr std::array kTellingWords{"action"_L1, "velarc"_L1};

QString folded(const QString &text)
{
    QString plain;
    for (const QChar unit : text.normalized(QString::NormalizationForm_KD)) {
        if (!unit.isMark()) {
            plain.append(unit);
        }
    }
    return plain.toCaseFolded();
}

template <std::size_t count>
bool begins(const QString &term, const std::array<QLatin1StringView, count> &words)
{
    return std::any_of(words.begin(), words.end(), [&](QLatin1StringView word) {
        return term == word || (term.size() >= kShortestBeginning && word.startsWith(term));
    });
}

struct Query
{
    QStringList terms; // folded, none empty
    QString whole;
    bool isAboutActions = false; // speaks of this program or of actions
};

Query queryOf(const QStringList &terms)
{
    Query query;
    for (const QString &term : terms.first(std::min(terms.size(), kMostTerms))) {
        if (const QString plain = folded(term).simplified(); !plain.isEmpty()) {
            query.terms.append(plain);
        }
    }
    query.whole = query.terms.join(u' ');
    query.isAboutActions = std::any_of(query.terms.begin(), query.terms.end(),
        [](const QString &term) { return begins(term, kTellingWords); });
    return query;
}

double relevanceOfName(const Query &query, const QString &name)
{
    if (name == query.whole) {
        return kWholeName;
    }
    return name.startsWith(query.whole) ? kBeginningOfName : kInName;
}

// None if the query does not mean the action.
std::optional<double> relevance(const Query &query, const AIAction &action)
{
    const QString name = folded(action.name);
    const QString skills = folded(action.skills.join(u'\n'));
    double least = kWholeName;
    bool isMeant = query.isAboutActions;
    for (const QString &term : query.terms) {
        if (name.contains(term)) {
            isMeant = true;
        } else if (skills.contains(term)) {
            isMeant = true;
            least = std::min(least, kInSkill);
        } else if (begins(term, kPhraseWords)) {
            least = std::min(least, kByPhrase);
        } else {
            return std::nullopt;
        }
    }
    if (!isMeant || query.terms.isEmpty()) {
        return std::nullopt;
    }
    return least < kWholeName ? least : relevanceOfName(query, name);
}

} // namespace

QList<ActionHit> searchActions(const QList<AIAction> &actions, const QStringList &terms)
{
    const Query query = queryOf(terms);
    QList<ActionHit> hits;
    for (const AIAction &action : actions) {
        if (const auto found = relevance(query, action)) {
            hits.append({action, *found});
        }
    }
    return hits;
}

QString searchSubtitle(const AIAction &action)
{
    return action.skills.isEmpty() ? u"Open this action in Velarc"_s : action.skills.join(u", "_s);
}

} // namespace velarc
