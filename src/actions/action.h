#pragma once

// The unit that the user keeps, edits and runs: the action, and the selectors that hang off it.
//
// Plain values and constant tables; any thread. The stored spelling of an enum value is its name
// here with a lower-case first letter, and stands in the table beside its label.

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>
#include <variant>

namespace velarc {

// Which engine runs an action. UseDefault is a real value: the settings decide at run time.
enum class AIProvider
{
    UseDefault,
    AppleIntelligence,
    OpenAI,
    Gemini,
    Anthropic,
    LocalFallback
};

// What kind of result is asked for.
enum class OutputFormat
{
    Text,
    Markdown,
    Json,
    Pdf,
    Image
};

// Where a result goes inside the program.
enum class OutputDestination
{
    ShowInApp,
    CopyToClipboard,
    ShareImmediately
};

// What the system does with a result. Kinds of tier Hidden stay decodable but are offered nowhere.
enum class SystemDestinationKind
{
    CalendarCreateEvent,
    CalendarListUpcomingEvents,
    CalendarEditEvent,
    CalendarDeleteEvent,
    MailCompose,
    MessagesCompose,
    MailListInboxThreads,
    MailSearchMessages,
    MessagesSearchConversations,
    MessagesEditScheduled,
    MessagesUnsendRecent,
};

// How much a system destination asks of the user.
enum class SystemDestinationTier
{
    FullyAutomated, // runs with no further step
    PrefillConfirm, // opens a prefilled window that the user sends
    Hidden, // exists in the stored vocabulary only
};

// All values in the order in which pickers list them.
[[nodiscard]] const QList<AIProvider> &allProviders();
[[nodiscard]] const QList<OutputFormat> &allOutputFormats();
[[nodiscard]] const QList<OutputDestination> &allOutputDestinations();
[[nodiscard]] const QList<SystemDestinationKind> &allSystemDestinationKinds();

[[nodiscard]] QString label(AIProvider provider);
[[nodiscard]] QString label(OutputFormat format);
[[nodiscard]] QString label(OutputDestination destination);
[[nodiscard]] QString label(SystemDestinationKind kind);

// One line under the engine's name on its card.
[[nodiscard]] QString cardSubtitle(AIProvider provider);

[[nodiscard]] SystemDestinationTier tier(SystemDestinationKind kind);

[[nodiscard]] QString storedSpelling(AIProvider provider);
[[nodiscard]] QString storedSpelling(OutputFormat format);
[[nodiscard]] QString storedSpelling(OutputDestination destination);
[[nodiscard]] QString storedSpelling(SystemDestinationKind kind);
[[nodiscard]] QString storedSpelling(SystemDestinationTier tier);

// The value that `spelling` stands for, to the letter; none for every other text.
template <typename Enum> [[nodiscard]] std::optional<Enum> fromStoredSpelling(QStringView spelling);
template <> std::optional<AIProvider> fromStoredSpelling(QStringView spelling);
template <> std::optional<OutputFormat> fromStoredSpelling(QStringView spelling);
template <> std::optional<OutputDestination> fromStoredSpelling(QStringView spelling);
template <> std::optional<SystemDestinationKind> fromStoredSpelling(QStringView spelling);

// Where an action's result goes: an output of this program, or a system action.
class ActionDestination
{
public:
    ActionDestination() = default; // output(ShowInApp)
    [[nodiscard]] static ActionDestination output(OutputDestination destination);
    [[nodiscard]] static ActionDestination system(SystemDestinationKind kind);

    [[nodiscard]] bool isSystem() const { return asSystem().has_value(); }
    [[nodiscard]] std::optional<OutputDestination> asOutput() const;
    [[nodiscard]] std::optional<SystemDestinationKind> asSystem() const;

    // The label of the value.
    [[nodiscard]] QString label() const;

    // "output.copyToClipboard" or "system.mailCompose".
    [[nodiscard]] QString identifier() const;

    friend bool operator==(const ActionDestination &, const ActionDestination &) = default;

private:
    std::variant<OutputDestination, SystemDestinationKind> m_value = OutputDestination::ShowInApp;
};

struct AIAction
{
    QUuid id; // the identity: stable across edits
    QString name; // also the only text that the Local Preview Engine reads to pick its output
    QString icon; // a symbol name, not validated
    QString colorHex; // six hexadecimal digits without a mark, not validated
    QString systemPrompt; // a prompt template
    AIProvider provider = AIProvider::UseDefault;
    OutputFormat outputFormat = OutputFormat::Text;
    ActionDestination destination;
    std::optional<QString> modelOverrideID; // beats the engine's default model
    QStringList skills; // free tags
    bool isPinned = false;
    qint64 sortOrder = 0; // ascending

    friend bool operator==(const AIAction &, const AIAction &) = default;
};

// Every kind but those of tier Hidden, in order.
[[nodiscard]] QList<SystemDestinationKind> visibleSystemKinds();

// Whether the action's destination is of tier Hidden, so that it is kept but shown nowhere.
[[nodiscard]] bool isHidden(const AIAction &action);

} // namespace velarc
