#include "accessible_tree.h"
#include "ui_world.h"

#include "ui/engine_room_presenter.h"

namespace velarc {

namespace {

class EngineRoomTest : public UiWorld
{
protected:
    QQuickItem *room = nullptr;
    EngineRoomPresenter *presenter = nullptr;

    void open(EngineRoomSection section = EngineRoomSection::Connections)
    {
        if (!viewModel) {
            launch();
        }
        viewModel->library().setEngineRoomSection(section);
        room = &openScreen(u"EngineRoom"_s, {760, 620});
        presenter = room->property("presenter").value<EngineRoomPresenter *>();
    }

    void storeConnected(AIProvider provider)
    {
        keys->keys[provider] = "sk-1";
        launch();
    }

    [[nodiscard]] QString savedLine() const
    {
        return presenter->savedLine().replace(QChar(0x202F), u' ');
    }

    [[nodiscard]] ProviderSettings stored() const { return store->loadProviderSettings(); }

    [[nodiscard]] bool isFocused(const QString &name) const
    {
        QAccessibleInterface *face =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return face != nullptr && face->text(QAccessible::Name) == name;
    }
};

TEST_F(EngineRoomTest, hasThreeSectionsBehindItsHeader)
{
    open();
    for (const char16_t *text :
        {u"Engine Room", u"Configure defaults once. Running stays on the home canvas.",
            u"Connections", u"Default Engine", u"Advanced"}) {
        EXPECT_TRUE(shows(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    }
    EXPECT_FALSE(savedLine().startsWith(u"Saved"_s));
}

TEST_F(EngineRoomTest, keepsTheSectionForTheNextVisit)
{
    open();
    click(u"Advanced"_s);
    EXPECT_TRUE(shows(u"Bulk Behavior"_s));
    EXPECT_EQ(store->loadHomeLayout().lastEngineRoomSection, EngineRoomSection::Advanced);
}

TEST_F(EngineRoomTest, showsEachCloudEngineAndHowItStands)
{
    storeConnected(AIProvider::Gemini);
    open();
    const QList<std::pair<QString, QString>> rows{{u"OpenAI"_s, u"ChatGPT and Codex"_s},
        {u"Gemini"_s, u"Google Gemini API"_s}, {u"Anthropic"_s, u"Claude and Claude Agent"_s}};
    for (const auto &[name, subtitle] : rows) {
        QAccessibleInterface *row = accessibleElement(*window, QAccessible::Grouping, name);
        ASSERT_NE(row, nullptr);
        auto *item = qobject_cast<QQuickItem *>(row->object());
        const bool isConnected = name == u"Gemini"_s;
        EXPECT_NE(itemCalled(subtitle, item), nullptr);
        EXPECT_NE(itemCalled(isConnected ? u"Connected"_s : u"Not Connected"_s, item), nullptr);
        EXPECT_EQ(itemCalled(u"Not connected"_s, item) == nullptr, isConnected);
        EXPECT_EQ(itemCalled(u"Connect"_s, item) == nullptr, isConnected);
        EXPECT_EQ(itemCalled(u"Reconnect"_s, item) != nullptr, isConnected);
        EXPECT_EQ(itemCalled(u"Disconnect"_s, item) != nullptr, isConnected);
    }
}

TEST_F(EngineRoomTest, connectAndReconnectOpenTheSheetOfTheEngine)
{
    storeConnected(AIProvider::Gemini);
    open();
    click(u"Reconnect"_s);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::Gemini);
    click(u"Connect"_s);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::Anthropic); // the lowest
}

TEST_F(EngineRoomTest, disconnectAsksNothingAndShowsTheEngineAsNotConnected)
{
    storeConnected(AIProvider::Gemini);
    open();
    click(u"Disconnect"_s);
    EXPECT_EQ(keys->storedKey(AIProvider::Gemini), std::nullopt);
    EXPECT_FALSE(shows(u"Disconnect"_s));
    EXPECT_EQ(presenter->statusNote(), u"Gemini disconnected."_s);
    EXPECT_TRUE(shows(u"Gemini disconnected."_s));
}

TEST_F(EngineRoomTest, disconnectThatFailsShowsNothing)
{
    storeConnected(AIProvider::Gemini);
    open();
    keys->failure = CredentialStoreError::keychain(7);
    click(u"Disconnect"_s);
    EXPECT_TRUE(shows(u"Disconnect"_s));
    EXPECT_EQ(presenter->statusNote(), QString());
}

TEST_F(EngineRoomTest, theVerificationGrowsOldWhileOneLooks)
{
    open();
    viewModel->connections().startConnecting(
        {AIProvider::OpenAI, Secret("sk-1"), {}, {}}, [](const auto & /*sentence*/) {});
    settle();
    const auto &rows = static_cast<RowsOf<ConnectionRow> &>(*presenter->connections()).rows();
    EXPECT_EQ(rows.first().status, u"Connected \u2022 Verified 0 sec. ago"_s);
}

TEST_F(EngineRoomTest, geminiAsDefaultWhileNotConnectedIsSavedAndNoted)
{
    open(EngineRoomSection::DefaultEngine);
    click(u"Gemini"_s);
    EXPECT_EQ(stored().defaultProvider, AIProvider::Gemini);
    EXPECT_TRUE(shows(u"Gemini is selected as default, but not connected yet."_s));
    EXPECT_TRUE(shows(u"Default Gemini model"_s));
}

TEST_F(EngineRoomTest, theOnDeviceCardHidesTheModelSelectorAndShowsTheExplanation)
{
    open(EngineRoomSection::DefaultEngine);
    click(u"OpenAI"_s);
    EXPECT_TRUE(shows(u"Default OpenAI model"_s));
    click(u"Apple Intelligence"_s);
    EXPECT_FALSE(shows(u"Model"_s));
    EXPECT_TRUE(shows(u"Model selection is only required for connected cloud providers."_s));
    EXPECT_EQ(stored().defaultProvider, AIProvider::AppleIntelligence);
}

TEST_F(EngineRoomTest, theCardsAreTheFiveEnginesAndNotTheDefaultItself)
{
    open(EngineRoomSection::DefaultEngine);
    QStringList labels;
    for (const ProviderCard &card :
        static_cast<RowsOf<ProviderCard> &>(*presenter->cards()).rows()) {
        labels.append(card.label + (card.isSelected ? u" *"_s : QString()));
    }
    EXPECT_EQ(labels,
        QStringList({u"Apple Intelligence *"_s, u"OpenAI"_s, u"Gemini"_s, u"Anthropic"_s,
            u"Local Preview Engine"_s}));
}

TEST_F(EngineRoomTest, aCardTellsAssistiveProgramsWhatItIsAndWhetherItIsChosen)
{
    open(EngineRoomSection::DefaultEngine);
    QAccessibleInterface *card =
        accessibleElement(*window, QAccessible::RadioButton, u"Local Preview Engine"_s);
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->text(QAccessible::Description),
        u"Offline heuristic preview. Always available offline"_s);
    EXPECT_FALSE(card->state().checked);
    card->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_TRUE(card->state().checked);
    EXPECT_EQ(stored().defaultProvider, AIProvider::LocalFallback);
}

TEST_F(EngineRoomTest, arrowKeysMoveTheChoiceAmongTheCards)
{
    open(EngineRoomSection::DefaultEngine);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    ASSERT_TRUE(isFocused(u"Apple Intelligence"_s));
    press(Qt::Key_Right);
    EXPECT_TRUE(isFocused(u"OpenAI"_s));
    EXPECT_EQ(stored().defaultProvider, AIProvider::OpenAI);
    press(Qt::Key_Down);
    EXPECT_TRUE(isFocused(u"Local Preview Engine"_s));
    press(Qt::Key_Right);
    EXPECT_TRUE(isFocused(u"Local Preview Engine"_s));
    press(Qt::Key_Left);
    EXPECT_EQ(stored().defaultProvider, AIProvider::Anthropic);
    press(Qt::Key_Up);
    EXPECT_EQ(stored().defaultProvider, AIProvider::AppleIntelligence);
}

TEST_F(EngineRoomTest, aChosenModelIsStored)
{
    open(EngineRoomSection::DefaultEngine);
    click(u"OpenAI"_s);
    EXPECT_EQ(presenter->models().first(), u"GPT-5 - Highest quality"_s);
    EXPECT_EQ(presenter->modelIndex(), 0);
    presenter->pickModel(3);
    EXPECT_EQ(stored().defaultOpenAIModelID, u"gpt-4o"_s);
    EXPECT_EQ(presenter->modelIndex(), 3);
}

class ModelFieldTest : public EngineRoomTest
{
protected:
    QQuickItem *field = nullptr;

    void SetUp() override
    {
        open(EngineRoomSection::DefaultEngine);
        click(u"OpenAI"_s);
        QAccessibleInterface *face =
            accessibleElement(*window, QAccessible::EditableText, u"Custom model ID"_s);
        ASSERT_NE(face, nullptr);
        field = qobject_cast<QQuickItem *>(face->object());
        field->forceActiveFocus();
        press(Qt::Key_A, Qt::ControlModifier);
    }

    [[nodiscard]] QString text() const { return field->property("text").toString(); }
};

TEST_F(ModelFieldTest, aTypedIdentifierOfNoListIsStoredAndLeavesThePickerWithoutASelection)
{
    EXPECT_EQ(text(), u"gpt-5"_s);
    type(u" gpt-x "_s);
    EXPECT_EQ(stored().defaultOpenAIModelID, u"gpt-x"_s);
    EXPECT_EQ(presenter->modelIndex(), -1);
    EXPECT_EQ(text(), u" gpt-x "_s); // nothing changes under the cursor
    press(Qt::Key_Return);
    EXPECT_EQ(text(), u"gpt-x"_s);
}

TEST_F(ModelFieldTest, clearingItStoresTheLiteralDefaultAndShowsItWhenOneLeaves)
{
    type(u"gpt-x"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_EQ(stored().defaultOpenAIModelID, u"gpt-5"_s);
    EXPECT_EQ(text(), QString());
    press(Qt::Key_Tab);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(text(), u"gpt-5"_s);
}

TEST_F(ModelFieldTest, followsThePickerAndTheCards)
{
    press(Qt::Key_Tab); // elsewhere
    presenter->pickModel(1);
    EXPECT_EQ(text(), u"gpt-5-mini"_s);
    presenter->pickDefault(u"anthropic"_s);
    EXPECT_EQ(text(), u"claude-opus-4-1-20250805"_s);
}

TEST_F(EngineRoomTest, aChangeOfTheToggleOfTheUseCaseAndOfTheCardEachMoveTheSavedTime)
{
    open(EngineRoomSection::Advanced);
    clock->setNow(Instant(std::chrono::sys_days(std::chrono::year(2026) / 2 / 20) + 15h));
    EXPECT_EQ(savedLine(), QString());
    click(u"Enable Apple Intelligence in this app"_s);
    EXPECT_EQ(savedLine(), u"Saved 10:00 AM"_s);
    EXPECT_FALSE(stored().enableAppleIntelligence);
    clock->advance(1min);
    click(u"Content Tagging"_s);
    EXPECT_EQ(savedLine(), u"Saved 10:01 AM"_s);
    EXPECT_EQ(stored().appleUseCase, u"contentTagging"_s);
    clock->advance(1min);
    click(u"Default Engine"_s);
    EXPECT_EQ(savedLine(), u"Saved 10:01 AM"_s); // the section is no setting
    click(u"Local Preview Engine"_s);
    EXPECT_EQ(savedLine(), u"Saved 10:02 AM"_s);
    clock->advance(1min);
    click(u"Local Preview Engine"_s);
    EXPECT_EQ(savedLine(), u"Saved 10:02 AM"_s); // nothing changed
}

TEST_F(EngineRoomTest, theSavedLineStartsEmptyWhenOneComesBack)
{
    open(EngineRoomSection::DefaultEngine);
    click(u"Local Preview Engine"_s);
    EXPECT_NE(savedLine(), QString());
    open(EngineRoomSection::DefaultEngine);
    EXPECT_EQ(savedLine(), QString());
}

TEST_F(EngineRoomTest, theOnDeviceStatusIsAskedWhenItOpens)
{
    launch();
    model->general = OnDeviceAvailability::ModelNotReady;
    open(EngineRoomSection::Advanced);
    EXPECT_EQ(presenter->onDeviceTitle(), u"Unavailable"_s);
    EXPECT_TRUE(shows(presenter->onDeviceDetails()));
}

TEST_F(EngineRoomTest, anUnknownUseCaseShowsAsTheGeneralOne)
{
    open(EngineRoomSection::Advanced);
    ProviderSettings settings = viewModel->providerSettings();
    settings.appleUseCase = u"weather"_s;
    viewModel->setProviderSettings(settings);
    EXPECT_EQ(presenter->useCase(), 0);
}

TEST_F(EngineRoomTest, theBulkCommandHasEveryActionFollowTheDefaultAtOnce)
{
    open(EngineRoomSection::Advanced);
    click(u"Apply Default Engine to All Actions"_s);
    for (const AIAction &action : store->loadActions()) {
        EXPECT_EQ(action.provider, AIProvider::UseDefault);
        EXPECT_EQ(action.modelOverrideID, std::nullopt);
    }
    EXPECT_TRUE(savedLine().startsWith(u"Saved "_s));
}

TEST_F(EngineRoomTest, aDisconnectOfTheDefaultEngineFlipsTheCardToTheOnDeviceOne)
{
    storeConnected(AIProvider::Gemini);
    open(EngineRoomSection::DefaultEngine);
    click(u"Gemini"_s);
    click(u"Connections"_s);
    click(u"Disconnect"_s);
    click(u"Default Engine"_s);
    QAccessibleInterface *card =
        accessibleElement(*window, QAccessible::RadioButton, u"Apple Intelligence"_s);
    ASSERT_NE(card, nullptr);
    EXPECT_TRUE(card->state().checked);
    EXPECT_EQ(stored().defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_TRUE(shows(u"Gemini disconnected."_s));
}

TEST_F(EngineRoomTest, aChangeFromElsewhereIsSavedAndMovesTheSavedLine)
{
    open();
    ProviderSettings settings = viewModel->providerSettings();
    settings.enableAppleIntelligence = false;
    viewModel->setProviderSettings(settings);
    EXPECT_EQ(savedLine(), QString());
    settle();
    EXPECT_NE(savedLine(), QString());
    EXPECT_FALSE(stored().enableAppleIntelligence);
}

TEST_F(EngineRoomTest, theFocusStaysInTheRowWhenItsDisconnectCommandGoes)
{
    storeConnected(AIProvider::OpenAI);
    open();
    itemCalled(u"Disconnect"_s)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_TRUE(isFocused(u"Connect"_s));
}

TEST_F(EngineRoomTest, worksFromTheKeyboardInTheSheet)
{
    openWindow();
    viewModel->setIsEngineRoomPresented(true);
    settle();
    ASSERT_TRUE(isFocused(u"Connections"_s));
    press(Qt::Key_Right);
    EXPECT_EQ(viewModel->engineRoomSection(), EngineRoomSection::DefaultEngine);
    EXPECT_TRUE(isFocused(u"Default Engine"_s));
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isEngineRoomPresented());
}

TEST_F(EngineRoomTest, theSheetHasACommandThatClosesIt)
{
    openWindow();
    viewModel->setIsEngineRoomPresented(true);
    settle();
    click(u"Close"_s);
    EXPECT_FALSE(viewModel->isEngineRoomPresented());
}

} // namespace

} // namespace velarc
