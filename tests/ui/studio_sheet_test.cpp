#include "ui_world.h"

#include "records/provider_models.h"

namespace velarc {

namespace {

class StudioSheetTest : public UiWorld
{
protected:
    StudioPresenter &studio() { return *screens->studio(); }
    [[nodiscard]] const AIAction &draft() const { return viewModel->studioDraft(); }

    // The editor on an action of the catalogue as `change` makes it.
    template <typename Change> void edit(Change change)
    {
        openWindow();
        AIAction action = viewModel->actions().at(0);
        action.provider = AIProvider::UseDefault;
        change(action);
        viewModel->library().editAction(action);
        settle();
    }

    void edit()
    {
        edit([](AIAction &) {});
    }

    void openNew()
    {
        openWindow();
        viewModel->library().newAction();
        settle();
    }

    void focus(const QString &name)
    {
        itemCalled(name)->forceActiveFocus(Qt::TabFocusReason);
        settle();
    }

    [[nodiscard]] QString textOf(const QString &name)
    {
        return itemCalled(name)->property("text").toString();
    }

    void selectAll() { press(Qt::Key_A, Qt::ControlModifier); }
};

TEST_F(StudioSheetTest, holdsItsSectionsAndTheDraft)
{
    openNew();
    for (const char *text :
        {"Action Studio", "Design how this action thinks, runs, and returns output.", "Identity",
            "Model", "System Prompt", "Variables", "Output", "Skills", "No skills attached yet.",
            "Global Default", "Advanced: Provider + model override", "Cancel", "Save Action"}) {
        EXPECT_TRUE(shows(QString::fromLatin1(text))) << text;
    }
    EXPECT_EQ(textOf(u"Action name"_s), u"New Action"_s);
    EXPECT_EQ(textOf(u"SF Symbol"_s), u"bolt.fill"_s);
    EXPECT_EQ(textOf(u"System Prompt"_s), draft().systemPrompt);
}

TEST_F(StudioSheetTest, theNameOfANewActionIsTypedOver)
{
    openNew();
    type(u"Haiku"_s);
    EXPECT_EQ(draft().name, u"Haiku"_s);
}

TEST_F(StudioSheetTest, anActionWithAnEngineOfItsOwnOpensWithItsBlockShowing)
{
    edit([](AIAction &action) { action.provider = AIProvider::OpenAI; });
    EXPECT_TRUE(studio().showsAdvanced());
    EXPECT_TRUE(shows(u"OpenAI model"_s));
    EXPECT_TRUE(shows(u"Action Override"_s));
    EXPECT_EQ(draft().modelOverrideID, u"gpt-5"_s);
}

TEST_F(StudioSheetTest, anActionOnTheDefaultOpensWithItsBlockClosed)
{
    edit([](AIAction &action) { action.provider = AIProvider::OpenAI; });
    viewModel->library().cancelStudio();
    viewModel->library().newAction();
    settle();
    EXPECT_FALSE(studio().showsAdvanced());
    click(u"Advanced: Provider + model override"_s);
    EXPECT_TRUE(shows(u"Use Engine Room default"_s));
    EXPECT_TRUE(shows(u"Always available"_s) || studio().engines()->count() == 6);
}

TEST_F(StudioSheetTest, switchingFromOpenAIToTheDeviceAndBackFillsInTheDefaultModel)
{
    edit([](AIAction &action) {
        action.provider = AIProvider::OpenAI;
        action.modelOverrideID = u"gpt-4.1"_s;
    });
    click(u"Apple Intelligence"_s);
    EXPECT_EQ(draft().provider, AIProvider::AppleIntelligence);
    EXPECT_EQ(draft().modelOverrideID, std::nullopt);
    EXPECT_FALSE(shows(u"OpenAI model"_s));
    click(u"OpenAI"_s);
    EXPECT_EQ(draft().modelOverrideID, u"gpt-5"_s);
}

TEST_F(StudioSheetTest, switchingFromOpenAIToGeminiKeepsTheModelAndARunSendsItToGemini)
{
    edit([](AIAction &action) {
        action.provider = AIProvider::OpenAI;
        action.modelOverrideID = u"gpt-5"_s;
    });
    click(u"Gemini"_s);
    EXPECT_EQ(draft().modelOverrideID, u"gpt-5"_s);
    EXPECT_EQ(textOf(u"Custom model ID"_s), u"gpt-5"_s);
    EXPECT_EQ(itemCalled(u"Gemini model"_s)->property("currentIndex").toInt(), -1);
    click(u"Save Action"_s);
    const auto saved = viewModel->actions().at(0);
    EXPECT_EQ(saved.modelOverrideID, u"gpt-5"_s);
    keys->keys[AIProvider::Gemini] = "key";
    viewModel->setQuickInput(u"text"_s);
    viewModel->startRun(saved, SmartInput());
    letRunGoOn();
    ASSERT_EQ(gemini->textRequests.size(), 1);
    EXPECT_EQ(gemini->textRequests.first().model, u"gpt-5"_s);
}

TEST_F(StudioSheetTest, choosingAnthropicMovesAnImageToTextAndTakesImageOutOfThePicker)
{
    edit([](AIAction &action) {
        action.provider = AIProvider::OpenAI;
        action.outputFormat = OutputFormat::Image;
    });
    EXPECT_TRUE(studio().formatNames().contains(u"Image"_s));
    click(u"Anthropic"_s);
    EXPECT_EQ(draft().outputFormat, OutputFormat::Text);
    EXPECT_FALSE(studio().formatNames().contains(u"Image"_s));
    EXPECT_EQ(itemCalled(u"Format"_s)->property("currentIndex").toInt(), 0);
    EXPECT_TRUE(shows(u"Claude supports text output only. Choose Text, Markdown, JSON, or PDF."_s));
}

TEST_F(StudioSheetTest, choosingMailMovesAPdfToTextAndLeavesTextAndMarkdown)
{
    edit([](AIAction &action) { action.outputFormat = OutputFormat::Pdf; });
    studio().pickDestination(
        static_cast<int>(studio().destinationNames().indexOf(u"Compose Email"_s)));
    settle();
    EXPECT_EQ(draft().destination.identifier(), u"system.mailCompose"_s);
    EXPECT_EQ(draft().outputFormat, OutputFormat::Text);
    EXPECT_EQ(studio().formatNames(), (QStringList{u"Text"_s, u"Markdown"_s}));
    EXPECT_TRUE(shows(u"App destinations support Text and Markdown output only."_s));
}

TEST_F(StudioSheetTest, theFormatThatIsShownFollowsTheDraftThroughAChangeOfTheList)
{
    edit([](AIAction &action) { action.outputFormat = OutputFormat::Markdown; });
    studio().pickDestination(4);
    settle();
    EXPECT_EQ(itemCalled(u"Format"_s)->property("currentIndex").toInt(), 1);
    EXPECT_EQ(itemCalled(u"Format"_s)->property("displayText").toString(), u"Markdown"_s);
}

TEST_F(StudioSheetTest, aColourOutsideThePaletteSelectsNoRowAndIsStillShown)
{
    edit([](AIAction &action) { action.colorHex = u"7C3AED"_s; });
    EXPECT_EQ(itemCalled(u"Color"_s)->property("currentIndex").toInt(), -1);
    EXPECT_EQ(studio().displayColor(), u"#7c3aed"_s);
    click(u"Save Action"_s);
    EXPECT_EQ(viewModel->actions().at(0).colorHex, u"7C3AED"_s);
}

TEST_F(StudioSheetTest, thePaletteIsPickedByItsName)
{
    openNew();
    EXPECT_EQ(studio().colorNames().size(), 7);
    focus(u"Color"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(draft().colorHex, u"059669"_s);
}

TEST_F(StudioSheetTest, addingATagTwiceGivesTwoTags)
{
    openNew();
    studio().setPendingSkill(u" a "_s);
    studio().addSkill();
    studio().setPendingSkill(u"a"_s);
    studio().addSkill();
    studio().setPendingSkill(u"  "_s);
    studio().addSkill();
    EXPECT_EQ(draft().skills, (QStringList{u"a"_s, u"a"_s}));
    EXPECT_EQ(studio().pendingSkill(), u"  "_s);
    studio().removeSkill(0);
    EXPECT_EQ(draft().skills, QStringList{u"a"_s});
}

TEST_F(StudioSheetTest, aTagIsAddedByItsButtonAndByReturn)
{
    openNew();
    focus(u"Add skill tag"_s);
    type(u"one"_s);
    click(u"Add"_s);
    focus(u"Add skill tag"_s);
    type(u"two"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(draft().skills, (QStringList{u"one"_s, u"two"_s}));
    EXPECT_EQ(textOf(u"Add skill tag"_s), QString());
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_TRUE(shows(u"two"_s));
    press(Qt::Key_Return);
    EXPECT_FALSE(viewModel->isStudioPresented());
}

TEST_F(StudioSheetTest, aChipOnAnEmptyPromptGivesNoLeadingLineFeed)
{
    openNew();
    focus(u"System Prompt"_s);
    selectAll();
    press(Qt::Key_Delete);
    EXPECT_EQ(draft().systemPrompt, QString());
    click(u"{Clipboard}"_s);
    EXPECT_EQ(draft().systemPrompt, u"{Clipboard}"_s);
    click(u"{Current_Date}"_s);
    EXPECT_EQ(draft().systemPrompt, u"{Clipboard}\n{Current_Date}"_s);
    EXPECT_EQ(textOf(u"System Prompt"_s), u"{Clipboard}\n{Current_Date}"_s);
}

TEST_F(StudioSheetTest, returnSavesFromAnyFieldOfOneLine)
{
    openNew();
    type(u"Haiku"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_TRUE(hasActionNamed(u"Haiku"_s));
}

TEST_F(StudioSheetTest, returnIsANewLineInThePromptAndWithControlItSaves)
{
    openNew();
    focus(u"System Prompt"_s);
    selectAll();
    type(u"one"_s);
    press(Qt::Key_Return);
    type(u"two"_s);
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(draft().systemPrompt, u"one\ntwo"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->actions().constLast().systemPrompt, u"one\ntwo"_s);
}

TEST_F(StudioSheetTest, escapeDropsTheEdit)
{
    edit();
    const QString before = viewModel->actions().at(0).name;
    type(u" changed"_s);
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->actions().at(0).name, before);
}

TEST_F(StudioSheetTest, bothWaysOutCancel)
{
    for (const QString &way : {u"Cancel"_s, u"Close"_s}) {
        edit();
        click(way);
        EXPECT_FALSE(viewModel->isStudioPresented());
        EXPECT_EQ(viewModel->library().editingActionID(), std::nullopt);
    }
}

TEST_F(StudioSheetTest, aPromptThatIsOnlyShownIsSavedAsItWas)
{
    const QString prompt = u"one\r\ntwo\u2028three\u00a0four"_s;
    edit([&](AIAction &action) { action.systemPrompt = prompt; });
    click(u"Save Action"_s);
    EXPECT_EQ(viewModel->actions().at(0).systemPrompt, prompt);
}

TEST_F(StudioSheetTest, theSymbolIsShownAsItIsTyped)
{
    openNew();
    focus(u"SF Symbol"_s);
    selectAll();
    type(u"calen"_s);
    EXPECT_EQ(draft().icon, u"calen"_s);
    EXPECT_EQ(studio().symbolCompletions().constFirst(), u"calendar"_s);
    EXPECT_TRUE(shows(u"calendar.badge.plus"_s));
}

TEST_F(StudioSheetTest, aSuggestedSymbolIsTakenByTheKeyboard)
{
    openNew();
    focus(u"SF Symbol"_s);
    selectAll();
    type(u"calen"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(draft().icon, u"calendar.badge.clock"_s);
    EXPECT_FALSE(shows(u"calendar.badge.plus"_s));
    EXPECT_EQ(textOf(u"SF Symbol"_s), u"calendar.badge.clock"_s);
}

TEST_F(StudioSheetTest, aSuggestedSymbolIsTakenByAPress)
{
    openNew();
    focus(u"SF Symbol"_s);
    selectAll();
    type(u"calen"_s);
    click(u"calendar.badge.plus"_s);
    EXPECT_EQ(draft().icon, u"calendar.badge.plus"_s);
}

TEST_F(StudioSheetTest, returnSavesWhileNoSuggestionIsChosen)
{
    openNew();
    focus(u"SF Symbol"_s);
    selectAll();
    type(u"calen"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->actions().constLast().icon, u"calen"_s);
}

TEST_F(StudioSheetTest, escapeClosesTheSuggestionsBeforeTheSheet)
{
    openNew();
    focus(u"SF Symbol"_s);
    press(Qt::Key_Down);
    EXPECT_FALSE(shows(u"calendar"_s)); // the whole name stands already
    selectAll();
    type(u"calen"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_FALSE(shows(u"calendar.badge.plus"_s));
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isStudioPresented());
}

TEST_F(StudioSheetTest, theNoteOnTheDefaultFollowsTheSettings)
{
    openNew();
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultProvider = AIProvider::LocalFallback;
    viewModel->setProviderSettings(settings);
    settle();
    EXPECT_TRUE(shows(u"Global default is the Local Preview Engine."_s));
}

TEST_F(StudioSheetTest, theModelIsPickedFromTheListOrTyped)
{
    edit([](AIAction &action) { action.provider = AIProvider::OpenAI; });
    studio().pickModel(1);
    settle();
    EXPECT_EQ(draft().modelOverrideID, openAIModels().at(1).id);
    EXPECT_EQ(textOf(u"Custom model ID"_s), openAIModels().at(1).id);
    focus(u"Custom model ID"_s);
    selectAll();
    type(u"my-model"_s);
    EXPECT_EQ(draft().modelOverrideID, u"my-model"_s);
    EXPECT_EQ(itemCalled(u"OpenAI model"_s)->property("currentIndex").toInt(), -1);
}

TEST_F(StudioSheetTest, everyControlIsReachedByTab)
{
    edit([](AIAction &action) { action.provider = AIProvider::OpenAI; });
    QStringList names;
    for (int step = 0; step < 40; ++step) {
        QAccessibleInterface *face =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        const QString name = face == nullptr ? u"?"_s : face->text(QAccessible::Name);
        if (names.contains(name) && step > 0 && name == names.constFirst()) {
            break;
        }
        names.append(name);
        press(Qt::Key_Tab);
    }
    for (const char *name :
        {"Action name", "SF Symbol", "Color", "Advanced: Provider + model override", "OpenAI",
            "OpenAI model", "Custom model ID", "System Prompt", "{User_Input}", "Format",
            "Destination", "Add skill tag", "Add", "Cancel", "Save Action", "Close"}) {
        EXPECT_TRUE(names.contains(QString::fromLatin1(name)))
            << name << " in " << names.join(u", "_s).toStdString();
    }
}

} // namespace

} // namespace velarc
