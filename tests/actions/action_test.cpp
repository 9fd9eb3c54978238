#include "action_samples.h"

#include "actions/action.h"
#include "actions/action_defaults.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Kind = SystemDestinationKind;
using Tier = SystemDestinationTier;

struct ProviderCase
{
    AIProvider value;
    QString spelling;
    QString label;
    QString subtitle;
};

const std::array kProviderCases{
    ProviderCase{AIProvider::UseDefault, u"useDefault"_s, u"Use Global Default"_s,
        u"Uses Engine Room defaults"_s},
    ProviderCase{AIProvider::AppleIntelligence, u"appleIntelligence"_s, u"Apple Intelligence"_s,
        u"On-device private model"_s},
    ProviderCase{AIProvider::OpenAI, u"openAI"_s, u"OpenAI"_s, u"ChatGPT and Codex"_s},
    ProviderCase{AIProvider::Gemini, u"gemini"_s, u"Gemini"_s, u"Google Gemini API"_s},
    ProviderCase{
        AIProvider::Anthropic, u"anthropic"_s, u"Anthropic"_s, u"Claude and Claude Agent"_s},
    ProviderCase{AIProvider::LocalFallback, u"localFallback"_s, u"Local Preview Engine"_s,
        u"Offline heuristic preview"_s},
};

template <typename Enum> struct LabelCase
{
    Enum value;
    QString spelling;
    QString label;
};

const std::array kFormatCases{
    LabelCase<OutputFormat>{OutputFormat::Text, u"text"_s, u"Text"_s},
    LabelCase<OutputFormat>{OutputFormat::Markdown, u"markdown"_s, u"Markdown"_s},
    LabelCase<OutputFormat>{OutputFormat::Json, u"json"_s, u"JSON"_s},
    LabelCase<OutputFormat>{OutputFormat::Pdf, u"pdf"_s, u"PDF"_s},
    LabelCase<OutputFormat>{OutputFormat::Image, u"image"_s, u"Image"_s},
};

const std::array kOutputCases{
    LabelCase<OutputDestination>{OutputDestination::ShowInApp, u"showInApp"_s, u"Show in App"_s},
    LabelCase<OutputDestination>{
        OutputDestination::CopyToClipboard, u"copyToClipboard"_s, u"Copy to Clipboard"_s},
    LabelCase<OutputDestination>{
        OutputDestination::ShareImmediately, u"shareImmediately"_s, u"Share Immediately"_s},
};

struct KindCase
{
    Kind value;
    QString spelling;
    QString label;
    Tier tier;
};

const std::array kKindCases{
    KindCase{Kind::CalendarCreateEvent, u"calendarCreateEvent"_s, u"Create Calendar Event"_s,
        Tier::FullyAutomated},
    KindCase{Kind::CalendarListUpcomingEvents, u"calendarListUpcomingEvents"_s,
        u"List Upcoming Events"_s, Tier::Hidden},
    KindCase{Kind::CalendarEditEvent, u"calendarEditEvent"_s, u"Edit Calendar Event"_s,
        Tier::FullyAutomated},
    KindCase{Kind::CalendarDeleteEvent, u"calendarDeleteEvent"_s, u"Delete Calendar Event"_s,
        Tier::FullyAutomated},
    KindCase{Kind::MailCompose, u"mailCompose"_s, u"Compose Email"_s, Tier::PrefillConfirm},
    KindCase{
        Kind::MessagesCompose, u"messagesCompose"_s, u"Compose Message"_s, Tier::PrefillConfirm},
    KindCase{Kind::MailListInboxThreads, u"mailListInboxThreads"_s, u"List Mail Threads"_s,
        Tier::Hidden},
    KindCase{Kind::MailSearchMessages, u"mailSearchMessages"_s, u"Search Mail"_s, Tier::Hidden},
    KindCase{Kind::MessagesSearchConversations, u"messagesSearchConversations"_s,
        u"Search Messages"_s, Tier::Hidden},
    KindCase{Kind::MessagesEditScheduled, u"messagesEditScheduled"_s, u"Edit Scheduled Message"_s,
        Tier::Hidden},
    KindCase{Kind::MessagesUnsendRecent, u"messagesUnsendRecent"_s, u"Unsend Recent Message"_s,
        Tier::Hidden},
};

template <typename Cases> auto valuesOf(const Cases &cases)
{
    QList<decltype(cases.front().value)> values;
    for (const auto &row : cases) {
        values.append(row.value);
    }
    return values;
}

template <typename Cases> void expectSpellingsAndLabels(const Cases &cases)
{
    for (const auto &row : cases) {
        EXPECT_EQ(storedSpelling(row.value), row.spelling);
        EXPECT_EQ(label(row.value), row.label);
        EXPECT_EQ(fromStoredSpelling<decltype(row.value)>(row.spelling), row.value);
        EXPECT_FALSE(fromStoredSpelling<decltype(row.value)>(row.spelling.toUpper()));
        EXPECT_FALSE(fromStoredSpelling<decltype(row.value)>(row.spelling + u' '));
    }
}

} // namespace

TEST(ActionModel, providersHaveTheirSpellingsAndLabels)
{
    expectSpellingsAndLabels(kProviderCases);
}

TEST(ActionModel, providersHaveTheirCardSubtitles)
{
    for (const ProviderCase &row : kProviderCases) {
        EXPECT_EQ(cardSubtitle(row.value), row.subtitle);
    }
}

TEST(ActionModel, formatsHaveTheirSpellingsAndLabels)
{
    expectSpellingsAndLabels(kFormatCases);
}

TEST(ActionModel, outputDestinationsHaveTheirSpellingsAndLabels)
{
    expectSpellingsAndLabels(kOutputCases);
}

TEST(ActionModel, systemKindsHaveTheirSpellingsAndLabels)
{
    expectSpellingsAndLabels(kKindCases);
}

TEST(ActionModel, systemKindsHaveTheirTiers)
{
    for (const KindCase &row : kKindCases) {
        EXPECT_EQ(tier(row.value), row.tier) << row.spelling.toStdString();
    }
}

TEST(ActionModel, tiersHaveTheirSpellings)
{
    EXPECT_EQ(storedSpelling(Tier::FullyAutomated), u"fullyAutomated"_s);
    EXPECT_EQ(storedSpelling(Tier::PrefillConfirm), u"prefillConfirm"_s);
    EXPECT_EQ(storedSpelling(Tier::Hidden), u"hidden"_s);
}

TEST(ActionModel, allValuesAreListedInTheOrderOfThePickers)
{
    EXPECT_EQ(allProviders(), valuesOf(kProviderCases));
    EXPECT_EQ(allOutputFormats(), valuesOf(kFormatCases));
    EXPECT_EQ(allOutputDestinations(), valuesOf(kOutputCases));
    EXPECT_EQ(allSystemDestinationKinds(), valuesOf(kKindCases));
}

TEST(ActionModel, emptySpellingStandsForNothing)
{
    EXPECT_FALSE(fromStoredSpelling<AIProvider>(u""));
    EXPECT_FALSE(fromStoredSpelling<OutputFormat>(u""));
    EXPECT_FALSE(fromStoredSpelling<OutputDestination>(u""));
    EXPECT_FALSE(fromStoredSpelling<SystemDestinationKind>(u""));
}

TEST(ActionModel, visibleSystemKindsAreTheFiveThatAreNotHidden)
{
    const QList<Kind> expected{Kind::CalendarCreateEvent, Kind::CalendarEditEvent,
        Kind::CalendarDeleteEvent, Kind::MailCompose, Kind::MessagesCompose};
    EXPECT_EQ(visibleSystemKinds(), expected);
}

TEST(ActionModel, actionIsHiddenExactlyWhenItsSystemKindIs)
{
    for (const KindCase &row : kKindCases) {
        const AIAction action = bound(actionNamed(u"A"_s), ActionDestination::system(row.value));
        EXPECT_EQ(isHidden(action), row.tier == Tier::Hidden) << row.spelling.toStdString();
    }
    for (const OutputDestination output : allOutputDestinations()) {
        EXPECT_FALSE(isHidden(bound(actionNamed(u"A"_s), ActionDestination::output(output))));
    }
}

TEST(ActionDestinationValue, identifierTellsTheArmAndTheSpelling)
{
    for (const auto &row : kOutputCases) {
        EXPECT_EQ(ActionDestination::output(row.value).identifier(), u"output."_s + row.spelling);
    }
    for (const auto &row : kKindCases) {
        EXPECT_EQ(ActionDestination::system(row.value).identifier(), u"system."_s + row.spelling);
    }
}

TEST(ActionDestinationValue, labelIsThatOfItsValue)
{
    for (const auto &row : kOutputCases) {
        EXPECT_EQ(ActionDestination::output(row.value).label(), row.label);
    }
    for (const auto &row : kKindCases) {
        EXPECT_EQ(ActionDestination::system(row.value).label(), row.label);
    }
}

TEST(ActionDestinationValue, armsGiveTheirOwnValueOnly)
{
    const auto output = ActionDestination::output(OutputDestination::CopyToClipboard);
    EXPECT_FALSE(output.isSystem());
    EXPECT_EQ(output.asOutput(), OutputDestination::CopyToClipboard);
    EXPECT_EQ(output.asSystem(), std::nullopt);

    const auto system = ActionDestination::system(Kind::MailCompose);
    EXPECT_TRUE(system.isSystem());
    EXPECT_EQ(system.asOutput(), std::nullopt);
    EXPECT_EQ(system.asSystem(), Kind::MailCompose);
}

TEST(ActionDestinationValue, destinationsAreEqualWhenArmAndValueAre)
{
    EXPECT_EQ(
        ActionDestination::system(Kind::MailCompose), ActionDestination::system(Kind::MailCompose));
    EXPECT_NE(ActionDestination::system(Kind::MailCompose),
        ActionDestination::system(Kind::MessagesCompose));
    // The first value of either arm.
    EXPECT_NE(ActionDestination::output(OutputDestination::ShowInApp),
        ActionDestination::system(Kind::CalendarCreateEvent));
}

TEST(ActionDestinationValue, defaultIsShowInApp)
{
    EXPECT_EQ(ActionDestination(), ActionDestination::output(OutputDestination::ShowInApp));
    EXPECT_EQ(AIAction().destination, ActionDestination());
}

TEST(ActionModel, actionsDifferInAnyField)
{
    const AIAction action = actionNamed(u"A"_s);
    const auto differsBy = [&](auto change) {
        AIAction changed = action;
        change(changed);
        return changed != action;
    };
    EXPECT_TRUE(differsBy([](AIAction &a) { a.id = QUuid(); }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.name = u"a"_s; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.icon = u"x"_s; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.colorHex = u"x"_s; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.systemPrompt = u"x"_s; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.provider = AIProvider::OpenAI; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.outputFormat = OutputFormat::Pdf; }));
    EXPECT_TRUE(differsBy(
        [](AIAction &a) { a.destination = ActionDestination::system(Kind::MailCompose); }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.modelOverrideID = u""_s; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.skills.append(u"x"_s); }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.isPinned = true; }));
    EXPECT_TRUE(differsBy([](AIAction &a) { a.sortOrder = 1; }));
    EXPECT_FALSE(differsBy([](AIAction &) {}));
}

TEST(ActionDefaults, promptsOfDraftsHoldABackslashAndAnN)
{
    EXPECT_EQ(blankActionPrompt(),
        QString::fromUtf8("You are a helpful assistant.\x5Cn\x5CnInput:\x5Cn{User_Input}"));
    EXPECT_EQ(savedPromptOfBlank(),
        QString::fromUtf8("You are a helpful assistant.\x5Cn\x5Cn{User_Input}"));
    EXPECT_FALSE(blankActionPrompt().contains(u'\n'));
    EXPECT_FALSE(savedPromptOfBlank().contains(u'\n'));
}

} // namespace velarc
