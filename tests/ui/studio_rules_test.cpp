#include "actions/action_defaults.h"
#include "ui/studio_rules.h"
#include "ui/symbols.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

namespace {

const ProviderSettings kSettings = defaultProviderSettings();
const ActionDestination kInApp = ActionDestination::output(OutputDestination::ShowInApp);
const ActionDestination kMail = ActionDestination::system(SystemDestinationKind::MailCompose);

AIAction draftOn(AIProvider provider)
{
    AIAction draft;
    draft.provider = provider;
    return draft;
}

TEST(StudioRules, anEngineWithModelsGetsItsDefaultWhereNoneIsNamed)
{
    AIAction draft = draftOn(AIProvider::Gemini);
    EXPECT_EQ(settledDraft(draft, kSettings).modelOverrideID, u"gemini-2.5-flash"_s);
    draft.modelOverrideID = u"  "_s;
    EXPECT_EQ(settledDraft(draft, kSettings).modelOverrideID, u"gemini-2.5-flash"_s);
}

TEST(StudioRules, theDefaultModelIsThatOfTheSettings)
{
    const ProviderSettings settings =
        setDefaultModelID(kSettings, AIProvider::OpenAI, u"gpt-5-mini");
    EXPECT_EQ(settledDraft(draftOn(AIProvider::OpenAI), settings).modelOverrideID, u"gpt-5-mini"_s);
}

TEST(StudioRules, aModelThatIsNamedStaysEvenWhereItIsOfAnotherEngine)
{
    AIAction draft = draftOn(AIProvider::Gemini);
    draft.modelOverrideID = u"gpt-5"_s;
    EXPECT_EQ(settledDraft(draft, kSettings).modelOverrideID, u"gpt-5"_s);
}

TEST(StudioRules, anEngineWithoutModelsHasNoModelOfItsOwn)
{
    for (const AIProvider provider :
        {AIProvider::UseDefault, AIProvider::AppleIntelligence, AIProvider::LocalFallback}) {
        AIAction draft = draftOn(provider);
        draft.modelOverrideID = u"gpt-5"_s;
        EXPECT_EQ(settledDraft(draft, kSettings).modelOverrideID, std::nullopt);
    }
}

TEST(StudioRules, anImageBecomesTextOnTheEnginesThatMakeNone)
{
    for (const AIProvider provider : {AIProvider::Anthropic, AIProvider::Gemini}) {
        AIAction draft = draftOn(provider);
        draft.outputFormat = OutputFormat::Image;
        EXPECT_EQ(settledDraft(draft, kSettings).outputFormat, OutputFormat::Text);
        EXPECT_THAT(offeredFormats(provider, kInApp), Not(Contains(OutputFormat::Image)));
    }
}

TEST(StudioRules, aFormatThatIsNoTextBecomesTextForAnApp)
{
    AIAction draft = draftOn(AIProvider::OpenAI);
    draft.outputFormat = OutputFormat::Pdf;
    draft.destination = kMail;
    EXPECT_EQ(settledDraft(draft, kSettings).outputFormat, OutputFormat::Text);
    draft.outputFormat = OutputFormat::Markdown;
    EXPECT_EQ(settledDraft(draft, kSettings).outputFormat, OutputFormat::Markdown);
}

TEST(StudioRules, anAppIsOfferedTextAndMarkdownOnly)
{
    EXPECT_THAT(offeredFormats(AIProvider::UseDefault, kMail),
        ElementsAre(OutputFormat::Text, OutputFormat::Markdown));
    EXPECT_EQ(offeredFormats(AIProvider::UseDefault, kInApp), allOutputFormats());
}

TEST(StudioRules, theNoteOfAnAppTakesThePlaceOfTheEnginesNote)
{
    EXPECT_EQ(formatNote(AIProvider::Gemini, kInApp),
        u"Gemini supports text output only in this release. Choose Text, Markdown, JSON, or PDF."_s);
    EXPECT_EQ(formatNote(AIProvider::Anthropic, kInApp),
        u"Claude supports text output only. Choose Text, Markdown, JSON, or PDF."_s);
    EXPECT_EQ(formatNote(AIProvider::Gemini, kMail),
        u"App destinations support Text and Markdown output only."_s);
    EXPECT_EQ(formatNote(AIProvider::OpenAI, kInApp), QString());
}

TEST(StudioRules, theTagTellsWhetherTheSettingsDecide)
{
    EXPECT_EQ(modelTag(AIProvider::UseDefault), u"Global Default"_s);
    EXPECT_EQ(modelTag(AIProvider::LocalFallback), u"Action Override"_s);
}

TEST(StudioRules, theNoteOnTheDefaultNamesItsEngineAndModel)
{
    ProviderSettings settings = kSettings;
    const auto noteOf = [&settings](AIProvider provider) {
        settings.defaultProvider = provider;
        return globalDefaultNote(settings);
    };
    EXPECT_EQ(noteOf(AIProvider::UseDefault), u"Global default is not set."_s);
    EXPECT_EQ(noteOf(AIProvider::AppleIntelligence),
        u"Global default is Apple Intelligence for private on-device generation."_s);
    EXPECT_EQ(noteOf(AIProvider::LocalFallback), u"Global default is the Local Preview Engine."_s);
    EXPECT_EQ(noteOf(AIProvider::OpenAI),
        u"Global default is OpenAI (gpt-5). New and default actions use this automatically."_s);
}

TEST(StudioRules, eachEngineHasItsStatusLine)
{
    EXPECT_EQ(engineStatusLine(AIProvider::UseDefault, u"x"_s), u"Use Engine Room default"_s);
    EXPECT_EQ(
        engineStatusLine(AIProvider::AppleIntelligence, u"x"_s), u"On-device private generation"_s);
    EXPECT_EQ(engineStatusLine(AIProvider::LocalFallback, u"x"_s), u"Always available"_s);
    EXPECT_EQ(engineStatusLine(AIProvider::Gemini, u"Not connected"_s), u"Not connected"_s);
}

TEST(StudioRules, onlyTheCloudEnginesHaveAModelPicker)
{
    EXPECT_EQ(modelPickerTitle(AIProvider::OpenAI), u"OpenAI model"_s);
    EXPECT_EQ(modelPickerTitle(AIProvider::Gemini), u"Gemini model"_s);
    EXPECT_EQ(modelPickerTitle(AIProvider::Anthropic), u"Anthropic model"_s);
    EXPECT_EQ(modelPickerTitle(AIProvider::UseDefault), QString());
    EXPECT_EQ(modelPickerTitle(AIProvider::AppleIntelligence), QString());
    EXPECT_EQ(modelRowText({u"m"_s, u"Model"_s, u"Fast"_s}), u"Model - Fast"_s);
}

TEST(StudioRules, theDestinationsAreTheOutputsAndThenTheAppsThatAreOffered)
{
    QStringList identifiers;
    for (const ActionDestination &destination : offeredDestinations()) {
        identifiers.append(destination.identifier());
    }
    EXPECT_EQ(identifiers,
        (QStringList{u"output.showInApp"_s, u"output.copyToClipboard"_s,
            u"output.shareImmediately"_s, u"system.calendarCreateEvent"_s,
            u"system.calendarEditEvent"_s, u"system.calendarDeleteEvent"_s, u"system.mailCompose"_s,
            u"system.messagesCompose"_s}));
}

TEST(StudioRules, aVariableOnAnEmptyPromptGetsNoLineFeedBeforeIt)
{
    EXPECT_EQ(withVariable({}, u"{Clipboard}"_s), u"{Clipboard}"_s);
    EXPECT_EQ(withVariable(u"Hi"_s, u"{Clipboard}"_s), u"Hi\n{Clipboard}"_s);
    EXPECT_EQ(withVariable(u" "_s, u"{Clipboard}"_s), u" \n{Clipboard}"_s);
}

TEST(StudioRules, theVariablesStandInTheirOrder)
{
    EXPECT_EQ(
        promptVariables(), (QStringList{u"{User_Input}"_s, u"{Current_Date}"_s, u"{Clipboard}"_s}));
}

TEST(StudioRules, completionsBeginWithWhatIsTypedAndThenHoldIt)
{
    const QStringList known{u"book"_s, u"cook"_s, u"notebook"_s, u"pen"_s};
    EXPECT_EQ(symbolCompletions(u"Boo", known), (QStringList{u"book"_s, u"notebook"_s}));
    EXPECT_EQ(symbolCompletions(u"", known), known);
    EXPECT_EQ(symbolCompletions(u"pen", known), QStringList());
    EXPECT_EQ(symbolCompletions(u"zebra", known), QStringList());
}

TEST(StudioRules, everyNameThatIsOfferedHasADrawingOfItsOwn)
{
    const QStringList names = knownSymbols();
    EXPECT_GT(names.size(), 50);
    for (const QString &name : names) {
        EXPECT_NE(iconFile(name), iconFile(u"no.such.symbol")) << name.toStdString();
    }
}

} // namespace

} // namespace velarc
