#include "entry/cli_answer.h"

#include "base/json.h"
#include "base/uuid.h"
#include "entry/action_lookup.h"

#include <cerrno>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// Writes `text` with one line feed behind it.
bool writeLine(FILE *stream, const QString &text)
{
    QByteArray utf8 = text.toUtf8();
    while (utf8.endsWith('\n')) {
        utf8.chop(1);
    }
    return write(stream, utf8.append('\n'));
}

QString ambiguity(const QString &typed, const AmbiguousAction &ambiguous)
{
    return u"Several actions are called \""_s + typed + u"\". Name one by its identifier:\n"_s
        + listing(ambiguous.candidates, AnswerForm::Lines);
}

} // namespace

QString inOneCell(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    return text;
}

bool write(FILE *stream, const QByteArray &bytes)
{
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0;
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

FoundAction findAction(const QString &typed, const CliSurroundings &surroundings)
{
    const ActionLookup lookup = lookUpAction(suggestedEntities(*surroundings.openStore()), typed);
    if (const auto *ambiguous = std::get_if<AmbiguousAction>(&lookup)) {
        return {std::nullopt, ambiguity(typed, *ambiguous)};
    }
    if (const auto *id = std::get_if<QUuid>(&lookup)) {
        return {*id, QString()};
    }
    return {std::nullopt,
        u"No action is called \""_s + typed + u"\". \"velarc-cli actions\" lists them."_s};
}

} // namespace velarc
