#include "actions/format_rules.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <array>

namespace velarc {

namespace {

using Format = OutputFormat;

enum class Goes
{
    Yes,
    No
};

// Whether a format goes with an output destination (most engines), with one on an engine that makes
// no images, and with a system destination; and what each of the three makes of it.
struct Rule
{
    Format format;
    Goes outputOnMost;
    Goes outputWithoutImages;
    Goes system;
    Format normalisedOnMost;
    Format normalisedWithoutImages;
    Format normalisedForSystem;
};

constexpr std::array kRules{
    Rule{Format::Text, Goes::Yes, Goes::Yes, Goes::Yes, Format::Text, Format::Text, Format::Text},
    Rule{Format::Markdown, Goes::Yes, Goes::Yes, Goes::Yes, Format::Markdown, Format::Markdown,
        Format::Markdown},
    Rule{Format::Json, Goes::Yes, Goes::Yes, Goes::No, Format::Json, Format::Json, Format::Text},
    Rule{Format::Pdf, Goes::Yes, Goes::Yes, Goes::No, Format::Pdf, Format::Pdf, Format::Text},
    Rule{Format::Image, Goes::Yes, Goes::No, Goes::No, Format::Image, Format::Text, Format::Text},
};

const QList<AIProvider> kWithImages{AIProvider::UseDefault, AIProvider::AppleIntelligence,
    AIProvider::OpenAI, AIProvider::LocalFallback};
const QList<AIProvider> kWithoutImages{AIProvider::Gemini, AIProvider::Anthropic};

void expectRule(Format format, const QList<AIProvider> &providers,
    const ActionDestination &destination, Goes goes, Format normalised)
{
    for (const AIProvider provider : providers) {
        SCOPED_TRACE(
            (label(format) + u' ' + label(provider) + u' ' + destination.label()).toStdString());
        EXPECT_EQ(isFormatAllowed(format, provider, destination), goes == Goes::Yes);
        EXPECT_EQ(normalisedFormat(format, provider, destination), normalised);
    }
}

} // namespace

TEST(FormatRules, textAndMarkdownAloneAreTextLike)
{
    EXPECT_TRUE(isTextLike(Format::Text));
    EXPECT_TRUE(isTextLike(Format::Markdown));
    EXPECT_FALSE(isTextLike(Format::Json));
    EXPECT_FALSE(isTextLike(Format::Pdf));
    EXPECT_FALSE(isTextLike(Format::Image));
}

TEST(FormatRules, outputDestinationsTakeAllFormatsButImagesWhereTheEngineMakesNone)
{
    for (const Rule &rule : kRules) {
        for (const OutputDestination output : allOutputDestinations()) {
            const auto destination = ActionDestination::output(output);
            expectRule(
                rule.format, kWithImages, destination, rule.outputOnMost, rule.normalisedOnMost);
            expectRule(rule.format, kWithoutImages, destination, rule.outputWithoutImages,
                rule.normalisedWithoutImages);
        }
    }
}

TEST(FormatRules, systemDestinationsTakeTextLikeFormatsOnAnyEngine)
{
    for (const Rule &rule : kRules) {
        for (const SystemDestinationKind kind : allSystemDestinationKinds()) {
            expectRule(rule.format, allProviders(), ActionDestination::system(kind), rule.system,
                rule.normalisedForSystem);
        }
    }
}

TEST(FormatRules, normalisedFormatIsAlwaysAllowed)
{
    for (const OutputFormat format : allOutputFormats()) {
        for (const AIProvider provider : allProviders()) {
            for (const auto &destination : {ActionDestination(),
                     ActionDestination::system(SystemDestinationKind::MailCompose)}) {
                EXPECT_TRUE(isFormatAllowed(
                    normalisedFormat(format, provider, destination), provider, destination));
            }
        }
    }
}

TEST(FormatRules, runChangesTheFormatForSystemDestinationsOnly)
{
    const auto system = ActionDestination::system(SystemDestinationKind::CalendarCreateEvent);
    for (const Rule &rule : kRules) {
        EXPECT_EQ(formatForDestination(rule.format, system), rule.normalisedForSystem);
        EXPECT_EQ(formatForDestination(rule.format, ActionDestination()), rule.format);
    }
}

} // namespace velarc
