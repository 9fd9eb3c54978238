#pragma once

// How velarc-cli speaks: answers go to standard output, all else to standard error.

#include "entry/cli_programs.h"
#include "entry/offered_actions.h"

namespace velarc {

// False if the other side takes no more.
bool write(FILE *stream, const QByteArray &bytes);

// A sentence on standard error.
void say(const CliSurroundings &surroundings, const QString &sentence);

// A sentence on standard error, and the status that follows from it.
CliExit complain(const CliSurroundings &surroundings, const QString &sentence, CliExit exit);

// The status where the answer could not be written; says so unless nobody reads any more.
CliExit unwritten(const CliSurroundings &surroundings);

// `text` and one line feed on standard output.
CliExit answer(const CliSurroundings &surroundings, const QString &text, CliExit exit);

// A text on one line: one that holds a line feed or a tab must not look like another line or
// column.
[[nodiscard]] QString inOneCell(QString text);

// An action a line, or JSON.
[[nodiscard]] QString listing(const QList<VelarcActionEntity> &entities, AnswerForm form);

// The action that a UUID or a title names, or why there is none.
struct FoundAction
{
    std::optional<QUuid> id;
    QString complaint;
};

[[nodiscard]] FoundAction findAction(const QString &typed, const CliSurroundings &surroundings);

} // namespace velarc
