#include "entry/cli_transfer.h"

#include "actions/action_json.h"
#include "base/errors.h"
#include "base/worker.h"
#include "entry/cli_answer.h"
#include "run/action_files.h"

#include <algorithm>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kStandardStream = u"-"_s;

QString nameOf(ImportChange change)
{
    switch (change) {
    case ImportChange::Adds:
        return u"new"_s;
    case ImportChange::Replaces:
        return u"replaces"_s;
    case ImportChange::KeepsAsItIs:
        return u"unchanged"_s;
    }
    Q_UNREACHABLE();
}

// A line an action, "new<TAB>NAME", and the summary behind them.
QString plan(const QList<ImportStep> &steps, const ActionFile &file)
{
    QStringList lines;
    for (const ImportStep &step : steps) {
        const bool isRenamed =
            !step.replacedName.isEmpty() && step.replacedName != step.action.name;
        lines.append(nameOf(step.change) + u'\t' + inOneCell(step.action.name)
            + (isRenamed ? u'\t' + inOneCell(step.replacedName) : QString()));
    }
    lines.append(importSummary(steps, file.unreadable.size()));
    return lines.join(u'\n');
}

void tellUnreadable(const ActionFile &file, const CliSurroundings &surroundings)
{
    for (const UnreadableAction &entry : file.unreadable) {
        const QString name =
            entry.name.isEmpty() ? QString() : u" ("_s + inOneCell(entry.name) + u')';
        say(surroundings,
            u"entry %1%2 is no action and was left out."_s.arg(entry.position).arg(name));
    }
}

QCoro::Task<ActionFile> readFile(QString path, CliSurroundings surroundings, std::stop_token stop)
{
    SerialWorker worker;
    if (path == kStandardStream) {
        const QByteArray bytes = surroundings.readStandardInput();
        auto work = [bytes](const std::stop_token &token) { return readActionFile(bytes, token); };
        co_return co_await worker.run(std::move(work), std::move(stop));
    }
    auto work = [path](const std::stop_token &token) { return loadActionFile(path, token); };
    co_return co_await worker.run(std::move(work), std::move(stop));
}

CliExit importIntoStore(const ActionFile &file, const CliSurroundings &surroundings)
{
    const std::unique_ptr<AppViewModel> viewModel = surroundings.makeViewModel();
    const QList<ImportStep> steps = importSteps(viewModel->actions(), file.actions);
    viewModel->library().importActions(changedActions(steps));
    return answer(surroundings, importSummary(steps, file.unreadable.size()), CliExit::Done);
}

// The readable actions alone are handed over: the others have been told of.
QCoro::Task<CliExit> import(ActionFile file, CliSurroundings surroundings, std::stop_token stop)
{
    SerialWorker worker;
    auto work = [ask = surroundings.importInWindow, actions = file.actions](
                    const std::stop_token &) { return ask(writeActions(actions)); };
    const ImportReply reply = co_await worker.run(std::move(work), std::move(stop));
    switch (reply.reply) {
    case WindowReply::Done:
        co_return answer(surroundings, reply.text, CliExit::Done);
    case WindowReply::NoWindow:
    case WindowReply::NoBus:
        co_return importIntoStore(file, surroundings);
    case WindowReply::Failed:
        co_return complain(surroundings,
            reply.text.isEmpty() ? u"The window did not take the actions over."_s : reply.text,
            CliExit::RunFailed);
    }
    Q_UNREACHABLE();
}

} // namespace

CliExit exportActions(const ExportCommand &command, const CliSurroundings &surroundings)
{
    QList<AIAction> actions = surroundings.openStore()->loadActions();
    if (command.action) {
        const FoundAction found = findAction(*command.action, surroundings);
        actions.removeIf([&](const AIAction &action) { return action.id != found.id; });
        if (actions.isEmpty()) {
            return complain(surroundings,
                found.id ? u"No action has that identifier."_s : found.complaint, CliExit::Usage);
        }
    }
    if (command.outputFile == kStandardStream) {
        const QString text = QString::fromUtf8(writeActions(actions));
        return answer(surroundings, text, CliExit::Done);
    }
    try {
        saveActionFile(command.outputFile, actions, IfPresent::Replace);
    } catch (const ActionExportError &error) {
        return complain(surroundings, error.message(), CliExit::RunFailed);
    }
    return CliExit::Done;
}

QCoro::Task<CliExit> importActions(
    ImportCommand command, CliSurroundings surroundings, std::stop_token stop)
{
    if (command.file == kStandardStream && surroundings.standardInputIsTerminal()) {
        co_return complain(surroundings, u"Name a file: velarc-cli import FILE, or pipe one in."_s,
            CliExit::Usage);
    }
    ActionFile file;
    QString refusal;
    try {
        file = co_await readFile(command.file, surroundings, stop);
    } catch (const ActionImportError &error) {
        refusal = error.message();
    }
    if (!refusal.isEmpty()) {
        co_return complain(surroundings, refusal, CliExit::RunFailed);
    }
    tellUnreadable(file, surroundings);
    if (command.mode == ImportMode::DryRun) {
        const auto steps = importSteps(surroundings.openStore()->loadActions(), file.actions);
        co_return answer(surroundings, plan(steps, file), CliExit::Done);
    }
    if (file.actions.isEmpty()) {
        co_return complain(
            surroundings, u"Nothing in the file can be imported."_s, CliExit::RunFailed);
    }
    co_return co_await import(std::move(file), std::move(surroundings), std::move(stop));
}

} // namespace velarc
