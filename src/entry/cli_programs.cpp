#include "entry/cli_programs.h"

#include "base/errors.h"
#include "base/json.h"
#include "base/uuid.h"
#include "entry/cli_answer.h"
#include "entry/cli_output.h"
#include "entry/cli_transfer.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kStandardOutput = u"-"_s;

CliExit list(const CliSurroundings &surroundings, AnswerForm form)
{
    const QList<VelarcActionEntity> entities = suggestedEntities(*surroundings.openStore());
    if (entities.isEmpty() && form == AnswerForm::Lines) {
        return CliExit::Done;
    }
    return answer(surroundings, listing(entities, form), CliExit::Done);
}

// The text to run on; none where there is neither an argument nor anything piped in.
std::optional<QString> inputOf(const RunCommand &command, const CliSurroundings &surroundings)
{
    if (command.text) {
        return command.text;
    }
    if (surroundings.standardInputIsTerminal()) {
        return std::nullopt;
    }
    // Bytes that are no UTF-8 become replacement characters.
    return QString::fromUtf8(surroundings.readStandardInput());
}

// The result itself, to where the command wants it; the answer unless that took its place.
CliExit answerRun(
    const RunCommand &command, const IntentOutcome &outcome, const CliSurroundings &surroundings)
{
    if (command.outputFile == kStandardOutput) {
        const QByteArray bytes = payloadBytes(outcome.run->payload);
        return write(surroundings.out, bytes) ? CliExit::Done : unwritten(surroundings);
    }
    if (!command.outputFile.isEmpty()) {
        writeOutputFile(command.outputFile, payloadBytes(outcome.run->payload));
    }
    const bool isJson = command.form == AnswerForm::Json;
    return answer(surroundings, isJson ? outcomeJson(outcome) : outcome.dialog, CliExit::Done);
}

// Where a result is that the answer only speaks of.
void tellWhereItIs(
    const RunCommand &command, const ResultPayload &payload, const CliSurroundings &surroundings)
{
    if (!command.outputFile.isEmpty() || command.form == AnswerForm::Json) {
        return;
    }
    if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        say(surroundings, u"The PDF is \""_s + pdf->url.toLocalFile() + u"\"."_s);
    } else if (std::holds_alternative<ImagePayload>(payload)) {
        say(surroundings, u"Ask for --output FILE to keep the image."_s);
    }
}

QCoro::Task<CliExit> finish(
    RunCommand command, IntentOutcome outcome, CliSurroundings surroundings, std::stop_token stop)
{
    if (outcome.kind == IntentOutcome::Kind::Refused) {
        const bool isJson = command.form == AnswerForm::Json;
        co_return answer(
            surroundings, isJson ? outcomeJson(outcome) : outcome.dialog, CliExit::Refused);
    }
    const CopyOutcome copied = co_await surroundings.finishCopying(std::move(stop));
    const CliExit exit = answerRun(command, outcome, surroundings);
    if (exit == CliExit::Done && copied == CopyOutcome::NoClipboard) {
        say(surroundings, u"There is no clipboard to copy the result to."_s);
    } else if (exit == CliExit::Done && copied == CopyOutcome::NothingToCopy) {
        tellWhereItIs(command, outcome.run->payload, surroundings);
    }
    co_return exit;
}

QCoro::Task<CliExit> runAction(
    QUuid id, QString input, RunCommand command, CliSurroundings surroundings, std::stop_token stop)
{
    QString failure;
    try {
        IntentOutcome outcome =
            co_await performIntent(id, std::move(input), surroundings.makeViewModel, stop);
        co_return co_await finish(command, std::move(outcome), surroundings, stop);
    } catch (const CancellationError &) {
        throw;
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    co_return complain(surroundings, failure, CliExit::RunFailed);
}

// A result that could not be put down in the end is better not asked for.
std::optional<QString> obstacleOf(const RunCommand &command)
{
    const bool hasFile = !command.outputFile.isEmpty() && command.outputFile != kStandardOutput;
    return hasFile ? obstacleToWriting(command.outputFile) : std::nullopt;
}

QCoro::Task<CliExit> run(RunCommand command, CliSurroundings surroundings, std::stop_token stop)
{
    const FoundAction found = findAction(command.action, surroundings);
    if (!found.id) {
        co_return complain(surroundings, found.complaint, CliExit::Usage);
    }
    if (const auto obstacle = obstacleOf(command)) {
        co_return complain(surroundings, *obstacle, CliExit::Usage);
    }
    auto input = inputOf(command, surroundings);
    if (!input) {
        co_return complain(surroundings,
            u"There is no input. Give a text behind the action, or pipe one in."_s, CliExit::Usage);
    }
    co_return co_await runAction(
        *found.id, *std::move(input), std::move(command), std::move(surroundings), std::move(stop));
}

QCoro::Task<CliExit> serve(CliSurroundings surroundings, std::stop_token stop)
{
    const bool hasServed = co_await surroundings.serve(std::move(stop));
    co_return hasServed ? CliExit::Done
                        : complain(surroundings,
                            u"There is no session bus, or another process serves on it already."_s,
                            CliExit::RunFailed);
}

} // namespace

QCoro::Task<CliExit> performCliCommand(
    CliCommand command, CliSurroundings surroundings, std::stop_token stop)
{
    if (const auto *listCommand = std::get_if<ListCommand>(&command)) {
        co_return list(surroundings, listCommand->form);
    }
    if (const auto *runCommand = std::get_if<RunCommand>(&command)) {
        co_return co_await run(*runCommand, std::move(surroundings), std::move(stop));
    }
    if (const auto *exportCommand = std::get_if<ExportCommand>(&command)) {
        co_return exportActions(*exportCommand, surroundings);
    }
    if (const auto *importCommand = std::get_if<ImportCommand>(&command)) {
        co_return co_await importActions(*importCommand, std::move(surroundings), std::move(stop));
    }
    if (std::holds_alternative<ServeCommand>(command)) {
        co_return co_await serve(std::move(surroundings), std::move(stop));
    }
    if (std::holds_alternative<HelpCommand>(command)) {
        co_return answer(surroundings, cliHelp(), CliExit::Done);
    }
    if (std::holds_alternative<VersionCommand>(command)) {
        co_return answer(surroundings, u"velarc-cli "_s + surroundings.version, CliExit::Done);
    }
    const QString message = std::get<UsageError>(command).message;
    co_return complain(surroundings, message + u"\nTry \"velarc-cli --help\"."_s, CliExit::Usage);
}

} // namespace velarc
