#include "actions/action_transfer.h"

#include "actions/action_json.h"
#include "base/async.h"
#include "base/text.h"
#include "base/uuid.h"

#include <QHash>
#include <QSet>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kFileNameLength = 60;

Json parsedFile(QByteArrayView bytes, const std::stop_token &stop)
{
    if (bytes.trimmed().isEmpty()) {
        throw ActionImportError(u"The file is empty, so nothing was imported."_s);
    }
    try {
        return parseJson(bytes, stop);
    } catch (const JsonError &) {
        throw ActionImportError(u"The file is not valid JSON, so nothing was imported."_s);
    }
}

QString nameOfUnreadable(const Json &entry)
{
    if (!entry.is_object()) {
        return {};
    }
    const auto name = entry.find("name");
    return name != entry.end() && name->is_string() ? jsonText(*name) : QString();
}

// One object per action: a file of one exported action may hold it bare.
Json entriesOf(Json document)
{
    if (document.is_array()) {
        return document;
    }
    if (!document.is_object()) {
        throw ActionImportError(u"The file holds no actions, so nothing was imported."_s);
    }
    Json entries = Json::array();
    entries.push_back(std::move(document));
    return entries;
}

void requireSensibleCount(const Json &entries)
{
    if (entries.empty()) {
        throw ActionImportError(u"The file holds no actions, so nothing was imported."_s);
    }
    if (entries.size() > static_cast<std::size_t>(kImportedActionLimit)) {
        throw ActionImportError(
            u"The file holds %1 actions, and %2 at most can be imported at once. Nothing was "
            u"imported."_s.arg(entries.size())
                .arg(kImportedActionLimit));
    }
}

QHash<QUuid, qsizetype> positionsByID(const QList<AIAction> &library)
{
    QHash<QUuid, qsizetype> positions;
    positions.reserve(library.size());
    for (qsizetype position = library.size() - 1; position >= 0; --position) {
        positions.insert(library.at(position).id, position); // the first of an id stands
    }
    return positions;
}

} // namespace

ActionImportError tooLargeToImport()
{
    return ActionImportError(
        u"The file is too large to import: %1 MB at most can be read. Nothing was imported."_s.arg(
            kImportedBytesLimit / (1024 * 1024)));
}

ActionFile readActionFile(QByteArrayView bytes, std::stop_token stop)
{
    if (bytes.size() > kImportedBytesLimit) {
        throw tooLargeToImport();
    }
    const Json entries = entriesOf(parsedFile(bytes, stop));
    requireSensibleCount(entries);
    ActionFile file;
    QSet<QUuid> ids;
    qsizetype position = 0;
    for (const Json &entry : entries) {
        throwIfStopped(stop);
        ++position;
        try {
            AIAction action = decodeAction(entry);
            if (ids.contains(action.id)) {
                action.id = newUuid();
            }
            ids.insert(action.id);
            file.actions.append(std::move(action));
        } catch (const JsonError &) {
            file.unreadable.append({position, nameOfUnreadable(entry)});
        }
    }
    return file;
}

QList<ImportStep> importSteps(const QList<AIAction> &library, const QList<AIAction> &imported)
{
    const QHash<QUuid, qsizetype> positions = positionsByID(library);
    QList<ImportStep> steps;
    steps.reserve(imported.size());
    for (const AIAction &action : imported) {
        const auto found = positions.constFind(action.id);
        if (found == positions.cend()) {
            steps.append({ImportChange::Adds, action, {}});
            continue;
        }
        const AIAction &present = library.at(*found);
        const bool isSame = present == action;
        steps.append({isSame ? ImportChange::KeepsAsItIs : ImportChange::Replaces, action,
            isSame ? QString() : present.name});
    }
    return steps;
}

QList<AIAction> changedActions(const QList<ImportStep> &steps)
{
    QList<AIAction> changed;
    for (const ImportStep &step : steps) {
        if (step.change != ImportChange::KeepsAsItIs) {
            changed.append(step.action);
        }
    }
    return changed;
}

QList<AIAction> withImported(QList<AIAction> library, const QList<AIAction> &imported)
{
    const QHash<QUuid, qsizetype> positions = positionsByID(library);
    for (const AIAction &action : imported) {
        const auto found = positions.constFind(action.id);
        if (found == positions.cend()) {
            library.append(action);
        } else {
            library[*found] = action;
        }
    }
    return library;
}

QString importSummary(const QList<ImportStep> &steps, qsizetype unreadable)
{
    const auto count = [&steps](ImportChange change) {
        return std::count_if(steps.cbegin(), steps.cend(),
            [change](const ImportStep &step) { return step.change == change; });
    };
    QStringList parts;
    const auto tell = [&parts](qsizetype number, const QString &what) {
        if (number > 0) {
            parts.append(QString::number(number) + u' ' + what);
        }
    };
    tell(count(ImportChange::Adds), u"new"_s);
    tell(count(ImportChange::Replaces), u"replaced"_s);
    tell(count(ImportChange::KeepsAsItIs), u"unchanged"_s);
    tell(unreadable, u"unreadable"_s);
    return parts.join(u", "_s);
}

QString exportFileName(QStringView actionName)
{
    QString stem;
    for (const QChar letter : characterPrefix(trimmed(actionName), kFileNameLength)) {
        const bool isSafe = letter.isLetterOrNumber() || letter.isSurrogate() || letter.isMark()
            || letter == u'-' || letter == u'_';
        if (isSafe) {
            stem += letter;
        } else if (!stem.isEmpty() && !stem.endsWith(u'-')) {
            stem += u'-';
        }
    }
    while (stem.endsWith(u'-')) {
        stem.chop(1);
    }
    return (stem.isEmpty() ? u"action"_s : stem) + u".json"_s;
}

} // namespace velarc
