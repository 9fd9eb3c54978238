#include "ui/import_rows.h"

#include "ui/action_look.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

ImportRow rowOf(const UnreadableAction &entry)
{
    const QString place = u"Entry "_s + QString::number(entry.position) + u" of the file"_s;
    ImportRow row;
    row.section = u"Cannot Be Read"_s;
    row.name = entry.name.isEmpty() ? place : entry.name;
    row.details = entry.name.isEmpty() ? QString() : place;
    row.symbol = u"exclamationmark.triangle.fill"_s;
    row.colorHex = u"#d97706"_s;
    return row;
}

QString sectionOf(ImportChange change)
{
    switch (change) {
    case ImportChange::Replaces:
        return u"Replaces"_s;
    case ImportChange::Adds:
        return u"New"_s;
    case ImportChange::KeepsAsItIs:
        return u"Unchanged"_s;
    }
    Q_UNREACHABLE();
}

ImportRow rowOf(const ImportStep &step)
{
    ImportRow row;
    row.section = sectionOf(step.change);
    row.name = step.action.name;
    if (step.change == ImportChange::Replaces) {
        row.details = step.replacedName == step.action.name
            ? u"Replaces the action of this name"_s
            : u"Replaces \u201c"_s + step.replacedName + u'\u201d';
    }
    row.symbol = step.action.icon;
    row.colorHex = displayColor(step.action.colorHex);
    return row;
}

} // namespace

QList<ImportRow> importRows(
    const QList<ImportStep> &steps, const QList<UnreadableAction> &unreadable)
{
    QList<ImportRow> rows;
    rows.reserve(steps.size() + unreadable.size());
    const auto append = [&rows](ImportRow row) {
        row.position = rows.size();
        rows.append(std::move(row));
    };
    for (const UnreadableAction &entry : unreadable) {
        append(rowOf(entry));
    }
    for (const ImportChange change :
        {ImportChange::Replaces, ImportChange::Adds, ImportChange::KeepsAsItIs}) {
        for (const ImportStep &step : steps) {
            if (step.change == change) {
                append(rowOf(step));
            }
        }
    }
    return rows;
}

} // namespace velarc
