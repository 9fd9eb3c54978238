#include "actions/action.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace velarc {

namespace {

struct ProviderRow
{
    AIProvider value;
    std::u16string_view spelling;
    std::u16string_view label;
    std::u16string_view cardSubtitle;
};

constexpr std::array kProviders{
    ProviderRow{
        AIProvider::UseDefault, u"useDefault", u"Use Global Default", u"Uses Engine Room defaults"},
    ProviderRow{AIProvider::AppleIntelligence, u"appleIntelligence", u"Apple Intelligence",
        u"On-device private model"},
    ProviderRow{AIProvider::OpenAI, u"openAI", u"OpenAI", u"ChatGPT and Codex"},
    ProviderRow{AIProvider::Gemini, u"gemini", u"Gemini", u"Google Gemini API"},
    ProviderRow{AIProvider::Anthropic, u"anthropic", u"Anthropic", u"Claude and Claude Agent"},
    ProviderRow{AIProvider::LocalFallback, u"localFallback", u"Local Preview Engine",
        u"Offline heuristic preview"},
};

struct FormatRow
{
    OutputFormat value;
    std::u16string_view spelling;
    std::u16string_view label;
};

constexpr std::array kFormats{
    FormatRow{OutputFormat::Text, u"text", u"Text"},
    FormatRow{OutputFormat::Markdown, u"markdown", u"Markdown"},
    FormatRow{OutputFormat::Json, u"json", u"JSON"},
    FormatRow{OutputFormat::Pdf, u"pdf", u"PDF"},
    FormatRow{OutputFormat::Image, u"image", u"Image"},
};

struct OutputRow
{
    OutputDestination value;
    std::u16string_view spelling;
    std::u16string_view label;
};

constexpr std::array kOutputs{
    OutputRow{OutputDestination::ShowInApp, u"showInApp", u"Show in App"},
    OutputRow{OutputDestination::CopyToClipboard, u"copyToClipboard", u"Copy to Clipboard"},
    OutputRow{OutputDestination::ShareImmediately, u"shareImmediately", u"Share Immediately"},
};

struct KindRow
{
    SystemDestinationKind value;
    std::u16string_view spelling;
    std::u16string_view label;
    SystemDestinationTier tier;
};

using Kind = SystemDestinationKind;
using Tier = SystemDestinationTier;

constexpr std::array kKinds{
    KindRow{Kind::CalendarCreateEvent, u"calendarCreateEvent", u"Create Calendar Event",
        Tier::FullyAutomated},
    KindRow{Kind::CalendarListUpcomingEvents, u"calendarListUpcomingEvents",
        u"List Upcoming Events", Tier::Hidden},
    KindRow{Kind::CalendarEditEvent, u"calendarEditEvent", u"Edit Calendar Event",
        Tier::FullyAutomated},
    KindRow{Kind::CalendarDeleteEvent, u"calendarDeleteEvent", u"Delete Calendar Event",
        Tier::FullyAutomated},
    KindRow{Kind::MailCompose, u"mailCompose", u"Compose Email", Tier::PrefillConfirm},
    KindRow{Kind::MessagesCompose, u"messagesCompose", u"Compose Message", Tier::PrefillConfirm},
    KindRow{
        Kind::MailListInboxThreads, u"mailListInboxThreads", u"List Mail Threads", Tier::Hidden},
    KindRow{Kind::MailSearchMessages, u"mailSearchMessages", u"Search Mail", Tier::Hidden},
    KindRow{Kind::MessagesSearchConversations, u"messagesSearchConversations", u"Search Messages",
        Tier::Hidden},
    KindRow{Kind::MessagesEditScheduled, u"messagesEditScheduled", u"Edit Scheduled Message",
        Tier::Hidden},
    KindRow{Kind::MessagesUnsendRecent, u"messagesUnsendRecent", u"Unsend Recent Message",
        Tier::Hidden},
};

// A table answers by index, so each row must stand at the place of its value.
template <typename Table> constexpr bool standsInEnumOrder(const Table &table)
{
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (static_cast<std::size_t>(table[index].value) != index) {
            return false;
        }
    }
    return true;
}

static_assert(standsInEnumOrder(kProviders));
static_assert(standsInEnumOrder(kFormats));
static_assert(standsInEnumOrder(kOutputs));
static_assert(standsInEnumOrder(kKinds));

template <typename Table, typename Enum> const auto &rowOf(const Table &table, Enum value)
{
    return table.at(static_cast<std::size_t>(value));
}

// The tables are constants, so the strings may point into them.
QString constantText(std::u16string_view text)
{
    return QString::fromRawData(
        reinterpret_cast<const QChar *>(text.data()), static_cast<qsizetype>(text.size()));
}

template <typename Table> auto valuesOf(const Table &table)
{
    QList<decltype(table.front().value)> values;
    std::transform(table.begin(), table.end(), std::back_inserter(values),
        [](const auto &row) { return row.value; });
    return values;
}

template <typename Table>
auto valueSpelled(const Table &table, QStringView spelling)
    -> std::optional<std::remove_cv_t<decltype(table.front().value)>>
{
    const auto row = std::find_if(table.begin(), table.end(), [&](const auto &candidate) {
        return QStringView(candidate.spelling.data(), candidate.spelling.size()) == spelling;
    });
    if (row == table.end()) {
        return std::nullopt;
    }
    return row->value;
}

} // namespace

const QList<AIProvider> &allProviders()
{
    static const QList<AIProvider> kValues = valuesOf(kProviders);
    return kValues;
}

const QList<OutputFormat> &allOutputFormats()
{
    static const QList<OutputFormat> kValues = valuesOf(kFormats);
    return kValues;
}

const QList<OutputDestination> &allOutputDestinations()
{
    static const QList<OutputDestination> kValues = valuesOf(kOutputs);
    return kValues;
}

const QList<SystemDestinationKind> &allSystemDestinationKinds()
{
    static const QList<SystemDestinationKind> kValues = valuesOf(kKinds);
    return kValues;
}

QString label(AIProvider provider)
{
    return constantText(rowOf(kProviders, provider).label);
}

QString label(OutputFormat format)
{
    return constantText(rowOf(kFormats, format).label);
}

QString label(OutputDestination destination)
{
    return constantText(rowOf(kOutputs, destination).label);
}

QString label(SystemDestinationKind kind)
{
    return constantText(rowOf(kKinds, kind).label);
}

QString cardSubtitle(AIProvider provider)
{
    return constantText(rowOf(kProviders, provider).cardSubtitle);
}

SystemDestinationTier tier(SystemDestinationKind kind)
{
    return rowOf(kKinds, kind).tier;
}

QString storedSpelling(AIProvider provider)
{
    return constantText(rowOf(kProviders, provider).spelling);
}

QString storedSpelling(OutputFormat format)
{
    return constantText(rowOf(kFormats, format).spelling);
}

QString storedSpelling(OutputDestination destination)
{
    return constantText(rowOf(kOutputs, destination).spelling);
}

QString storedSpelling(SystemDestinationKind kind)
{
    return constantText(rowOf(kKinds, kind).spelling);
}

QString storedSpelling(SystemDestinationTier tier)
{
    switch (tier) {
    case SystemDestinationTier::FullyAutomated:
        return QStringLiteral("fullyAutomated");
    case SystemDestinationTier::PrefillConfirm:
        return QStringLiteral("prefillConfirm");
    case SystemDestinationTier::Hidden:
        return QStringLiteral("hidden");
    }
    Q_UNREACHABLE();
}

template <> std::optional<AIProvider> fromStoredSpelling(QStringView spelling)
{
    return valueSpelled(kProviders, spelling);
}

template <> std::optional<OutputFormat> fromStoredSpelling(QStringView spelling)
{
    return valueSpelled(kFormats, spelling);
}

template <> std::optional<OutputDestination> fromStoredSpelling(QStringView spelling)
{
    return valueSpelled(kOutputs, spelling);
}

template <> std::optional<SystemDestinationKind> fromStoredSpelling(QStringView spelling)
{
    return valueSpelled(kKinds, spelling);
}

ActionDestination ActionDestination::output(OutputDestination destination)
{
    ActionDestination made;
    made.m_value = destination;
    return made;
}

ActionDestination ActionDestination::system(SystemDestinationKind kind)
{
    ActionDestination made;
    made.m_value = kind;
    return made;
}

std::optional<OutputDestination> ActionDestination::asOutput() const
{
    const auto *value = std::get_if<OutputDestination>(&m_value);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<SystemDestinationKind> ActionDestination::asSystem() const
{
    const auto *value = std::get_if<SystemDestinationKind>(&m_value);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

QString ActionDestination::label() const
{
    return std::visit([](auto value) { return velarc::label(value); }, m_value);
}

QString ActionDestination::identifier() const
{
    const QString arm = isSystem() ? QStringLiteral("system.") : QStringLiteral("output.");
    return arm + std::visit([](auto value) { return storedSpelling(value); }, m_value);
}

QList<SystemDestinationKind> visibleSystemKinds()
{
    QList<SystemDestinationKind> visible = allSystemDestinationKinds();
    visible.removeIf([](SystemDestinationKind kind) { return tier(kind) == Tier::Hidden; });
    return visible;
}

bool isHidden(const AIAction &action)
{
    const auto kind = action.destination.asSystem();
    return kind.has_value() && tier(*kind) == SystemDestinationTier::Hidden;
}

} // namespace velarc
