#include "entry/cli_programs.h"

#include "base/errors.h"
#include "base/json.h"
#include "base/uuid.h"
#include "entry/action_lookup.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// Writes `text` with one line feed behind it. False if the other side takes no more.
bool writeLine(FILE *stream, const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    while (utf8.endsWith('\n')) {
        utf8.chop(1);
    }
    utf8.append('\n');
    const auto size = static_cast<std::size_t>(utf8.size());
    return std::fwrite(utf8.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
}

CliExit answer(const CliSurroundings &surroundings, const QString &text, CliExit exit)
{
    if (writeLine(surroundings.out, text)) {
        return exit;
    }
    writeLine(surroundings.err, u"velarc-cli: the answer could not be written."_s);
    return CliExit::RunFailed;
}

CliExit complain(const CliSurroundings &surroundings, const QString &sentence, CliExit exit)
{
    writeLine(surroundings.err, u"velarc-cli: "_s + sentence);
    return exit;
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

QString listing(const QList<VelarcActionEntity> &entities, ListingForm form)
{
    if (form == ListingForm::Json) {
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

CliExit list(const CliSurroundings &surroundings, ListingForm form)
{
    const QList<VelarcActionEntity> entities = suggestedEntities(*surroundings.openStore());
    if (entities.isEmpty() && form == ListingForm::Lines) {
        return CliExit::Done;
    }
    return answer(surroundings, listing(entities, form), CliExit::Done);
}

QString ambiguity(const QString &typed, const AmbiguousAction &ambiguous)
{
    return u"Several actions are called \""_s + typed + u"\". Name one by its identifier:\n"_s
        + listing(ambiguous.candidates, ListingForm::Lines);
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

QCoro::Task<CliExit> runAction(
    QUuid id, QString input, CliSurroundings surroundings, std::stop_token stop)
{
    std::optional<IntentOutcome> outcome;
    QString failure;
    try {
        outcome = co_await performIntent(id, std::move(input), surroundings.makeViewModel, stop);
    } catch (const CancellationError &) {
        throw;
    } catch (const std::exception &error) {
        failure = errorDescription(error);
    }
    if (!outcome) {
        co_return complain(surroundings, failure, CliExit::RunFailed);
    }
    co_return answer(surroundings, outcome->dialog,
        outcome->kind == IntentOutcome::Kind::Done ? CliExit::Done : CliExit::Refused);
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
    auto input = inputOf(command, surroundings);
    if (!input) {
        co_return complain(surroundings,
            u"There is no input. Give a text behind the action, or pipe one in."_s, CliExit::Usage);
    }
    co_return co_await runAction(
        std::get<QUuid>(lookup), *std::move(input), std::move(surroundings), std::move(stop));
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
