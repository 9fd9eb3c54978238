#include "entry/cli_programs.h"

#include "base/errors.h"
#include "base/json.h"
#include "base/uuid.h"
#include "entry/action_lookup.h"
#include "entry/cli_output.h"

#include <cerrno>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kStandardOutput = u"-"_s;

// False if the other side takes no more.
bool write(FILE *stream, const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

// Writes `text` with one line feed behind it.
bool writeLine(FILE *stream, const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    while (utf8.endsWith('\n')) {
        utf8.chop(1);
    }
    return write(stream, utf8.append('\n'));
}

void say(const CliSurroundings &surroundings, const QString &sentence)
{
    writeLine(surroundings.err, u"velarc-cli: "_s + sentence);
}

CliExit complain(const CliSurroundings &surroundings, const QString &sentence, CliExit exit)
{
    say(surroundings, sentence);
    return exit;
}

CliExit unwritten(const CliSurroundings &surroundings)
{
    if (errno == EPIPE && !surroundings.isClosedPipeTold) {
        return CliExit::ClosedPipe;
    }
    return complain(surroundings, u"the answer could not be written."_s, CliExit::RunFailed);
}

CliExit answer(const CliSurroundings &surroundings, const QString &text, CliExit exit)
{
    return writeLine(surroundings.out, text) ? exit : unwritten(surroundings);
}

// A title that holds a line feed or a tab must not look like another line or column.
QString inOneCell(QString title)
{
    for (QChar &character : title) {
        if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    return title;
}

QString listing(const QList<VelarcActionEntity> &entities, AnswerForm form)
{
    if (form == AnswerForm::Json) {
        Json array = Json::array();
        for (const VelarcActionEntity &entity : entities) {
            array.push_back(
                {{"id", jsonFromText(uuidText(entity.id))}, {"title", jsonFromText(entity.title)}});
        }
        return QString::fromUtf8(writeJson(array));
    }
    QStringList lines;
    for (const VelarcActionEntity &entity : entities) {
        lines.append(uuidText(entity.id) + u'\t' + inOneCell(entity.title));
    }
    return lines.join(u'\n');
}

CliExit list(const CliSurroundings &surroundings, AnswerForm form)
{
    const QList<VelarcActionEntity> entities = suggestedEntities(*surroundings.openStore());
    if (entities.isEmpty() && form == AnswerForm::Lines) {
        return CliExit::Done;
    }
    return answer(surroundings, listing(entities, form), CliExit::Done);
}

QString ambiguity(const QString &typed, const AmbiguousAction &ambiguous)
{
    return u"Several actions are called \""_s + typed + u"\". Name one by its identifier:\n"_s
        + listing(ambiguous.candidates, AnswerForm::Lines);
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
    const ActionLookup lookup =
        lookUpAction(suggestedEntities(*surroundings.openStore()), command.action);
    if (std::holds_alternative<NoSuchAction>(lookup)) {
        co_return complain(surroundings,
            u"No action is called \""_s + command.action
                + u"\". \"velarc-cli actions\" lists them."_s,
            CliExit::Usage);
    }
    if (const auto *ambiguous = std::get_if<AmbiguousAction>(&lookup)) {
        co_return complain(surroundings, ambiguity(command.action, *ambiguous), CliExit::Usage);
    }
    if (const auto obstacle = obstacleOf(command)) {
        co_return complain(surroundings, *obstacle, CliExit::Usage);
    }
    auto input = inputOf(command, surroundings);
    if (!input) {
        co_return complain(surroundings,
            u"There is no input. Give a text behind the action, or pipe one in."_s, CliExit::Usage);
    }
    co_return co_await runAction(std::get<QUuid>(lookup), *std::move(input), std::move(command),
        std::move(surroundings), std::move(stop));
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
