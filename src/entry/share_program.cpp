#include "entry/share_program.h"

#include "base/text.h"
#include "entry/action_lookup.h"
#include "entry/desktop_names.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// What keeps the command from being done; the sentence says why.
struct ShareFailure
{
    QString sentence;
    ShareExit exit = ShareExit::Usage;
};

std::optional<QUuid> actionIdOf(
    const std::optional<QString> &typed, const ShareSurroundings &surroundings)
{
    if (!typed) {
        return std::nullopt;
    }
    const ActionLookup lookup = lookUpAction(suggestedEntities(*surroundings.openStore()), *typed);
    if (const auto *id = std::get_if<QUuid>(&lookup)) {
        return *id;
    }
    throw std::holds_alternative<AmbiguousAction>(lookup)
        ? ShareFailure{u"Several actions are called \""_s + *typed
            + u"\". \"velarc-cli actions\" lists their identifiers."_s}
        : ShareFailure{
            u"No action is called \""_s + *typed + u"\". \"velarc-cli actions\" lists them."_s};
}

QString textOf(const std::optional<QString> &given, const ShareSurroundings &surroundings)
{
    if (!given && surroundings.standardInputIsTerminal()) {
        throw ShareFailure{u"There is no text. Give one behind the options, or pipe one in."_s};
    }
    // Bytes that are no UTF-8 become replacement characters.
    QString text = given ? *given : QString::fromUtf8(surroundings.readStandardInput());
    if (isBlank(text)) {
        throw ShareFailure{u"The text is blank."_s};
    }
    return text;
}

// A store that cannot be written keeps what it is given for the life of the process alone: another
// look at it tells.
void requireThatItStands(bool stands)
{
    if (!stands) {
        throw ShareFailure{u"The text could not be left for the window."_s, ShareExit::Failed};
    }
}

void openWindow(QLatin1StringView address, const ShareSurroundings &surroundings)
{
    if (!surroundings.openUrl(QUrl{QString(address)})) {
        throw ShareFailure{
            u"The window could not be opened. The text is kept until "_s + address + u" is."_s,
            ShareExit::Failed};
    }
}

// A date as the store keeps it, so that what is read back is equal.
Instant inWholeSeconds(Instant instant)
{
    return std::chrono::floor<std::chrono::seconds>(instant);
}

void share(const ShareTextCommand &command, const ShareSurroundings &surroundings)
{
    ShareHandoffRequest request;
    request.actionID = actionIdOf(command.action, surroundings);
    request.inputText = textOf(command.text, surroundings);
    request.sourceApp = command.source;
    request.createdAt = inWholeSeconds(surroundings.now());
    surroundings.openStore()->savePendingHandoff(request);
    requireThatItStands(surroundings.openStore()->loadPendingHandoff() == request);
    openWindow(kHandoffUrl, surroundings);
}

void share(const ShareResultCommand &command, const ShareSurroundings &surroundings)
{
    ShareResult result;
    result.actionID = actionIdOf(command.action, surroundings);
    result.actionName = command.actionName;
    result.output = textOf(command.text, surroundings);
    result.createdAt = inWholeSeconds(surroundings.now());
    surroundings.openStore()->saveLatestResult(result);
    requireThatItStands(surroundings.openStore()->loadLatestResult() == result);
    openWindow(kResultUrl, surroundings);
}

void print(FILE *stream, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<std::size_t>(utf8.size()), stream);
    std::fflush(stream);
}

ShareExit complain(const ShareFailure &failure, const ShareSurroundings &surroundings)
{
    print(surroundings.err, u"velarc-share: "_s + failure.sentence + u'\n');
    return failure.exit;
}

template <typename Command>
ShareExit shared(const Command &command, const ShareSurroundings &surroundings)
{
    try {
        share(command, surroundings);
        return ShareExit::Done;
    } catch (const ShareFailure &failure) {
        return complain(failure, surroundings);
    }
}

} // namespace

ShareExit performShareCommand(const ShareCommand &command, const ShareSurroundings &surroundings)
{
    if (const auto *text = std::get_if<ShareTextCommand>(&command)) {
        return shared(*text, surroundings);
    }
    if (const auto *result = std::get_if<ShareResultCommand>(&command)) {
        return shared(*result, surroundings);
    }
    if (const auto *error = std::get_if<ShareUsageError>(&command)) {
        return complain({error->message + u"\nTry \"velarc-share --help\"."_s}, surroundings);
    }
    print(surroundings.out,
        std::holds_alternative<ShareHelpCommand>(command)
            ? shareHelp()
            : u"velarc-share "_s + surroundings.version + u'\n');
    return ShareExit::Done;
}

} // namespace velarc
