#include "base/uuid.h"
#include "support/app_world.h"
#include "support/environment.h"

namespace velarc {
namespace {

class StartUpTest : public AppWorld
{
protected:
    ~StartUpTest() override { scope->finish(); }

    [[nodiscard]] static QByteArray actionJson(
        const char *id, const char *name, const QByteArray &rest = {})
    {
        QByteArray json = QByteArrayLiteral("{\"id\":\"") + id + "\",\"name\":\"" + name + '"';
        return rest.isEmpty() ? json + '}' : json + ',' + rest + '}';
    }

    [[nodiscard]] Json storedActionNamed(const std::string &name)
    {
        for (const Json &action : storedDocument(kActionsKey)) {
            if (action["name"] == name) {
                return action;
            }
        }
        return {};
    }

    const char *first = "11111111-1111-4111-8111-111111111111";
    const char *second = "22222222-2222-4222-8222-222222222222";
};

TEST_F(StartUpTest, firstLaunchShowsTheCatalogueAndSelectsItsFirstAction)
{
    launch();
    EXPECT_EQ(viewModel->actions().size(), 22);
    EXPECT_EQ(storedDocument(kActionsKey).size(), 22U);
    EXPECT_EQ(viewModel->selectedActionID(), actionNamed(u"One-Sentence Summary"_s).id);
    EXPECT_EQ(storedDocument(kLayoutKey)["selectedActionID"],
        uuidText(*viewModel->selectedActionID()).toStdString());
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_TRUE(std::holds_alternative<EngineReady>(viewModel->engineState()));
}

TEST_F(StartUpTest, fieldsStandAtTheirInitialValuesAfterAFirstLaunch)
{
    launch();
    EXPECT_EQ(viewModel->providerSettings(), defaultProviderSettings());
    EXPECT_EQ(viewModel->providerConnections(), ProviderConnectionState());
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
    EXPECT_EQ(viewModel->appScreen(), AppScreen::Home);
    EXPECT_EQ(viewModel->quickInput(), QString());
    EXPECT_TRUE(viewModel->quickAttachments().isEmpty());
    EXPECT_EQ(viewModel->inputAttachmentNotice(), std::nullopt);
    EXPECT_EQ(viewModel->latestRunDebugInfo(), std::nullopt);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"None"_s);
    EXPECT_TRUE(viewModel->recentActionIDs().isEmpty());
    EXPECT_EQ(viewModel->engineRoomSection(), EngineRoomSection::Connections);
    EXPECT_TRUE(viewModel->newRunExperienceEnabled());
    EXPECT_FALSE(viewModel->isMoreSheetPresented());
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    EXPECT_FALSE(viewModel->isEngineRoomPresented());
    EXPECT_FALSE(viewModel->isUsagePresented());
    EXPECT_EQ(viewModel->homeHintState(), HomeHintState());
    EXPECT_EQ(viewModel->homeAutomationOptions(), HomeAutomationOptions());
    EXPECT_EQ(viewModel->clipboardToast(), std::nullopt);
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_FALSE(viewModel->isInputModalPresented());
    EXPECT_EQ(viewModel->inputModalText(), QString());
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), std::nullopt);
    EXPECT_EQ(viewModel->suggestedConnectionProvider(), std::nullopt);
    EXPECT_EQ(viewModel->refinePrompt(), QString());
}

TEST_F(StartUpTest, draftThatNobodyOpenedIsABlankActionBehindAllOthers)
{
    launch();
    const AIAction &draft = viewModel->studioDraft();
    EXPECT_EQ(draft.name, u"New Action"_s);
    EXPECT_EQ(draft.icon, u"bolt.fill"_s);
    EXPECT_EQ(draft.colorHex, u"2563EB"_s);
    EXPECT_EQ(draft.systemPrompt, uR"(You are a helpful assistant.\n\nInput:\n{User_Input})"_s);
    EXPECT_EQ(draft.sortOrder, 999);
    EXPECT_FALSE(draft.id.isNull());
}

TEST_F(StartUpTest, everyFieldNotifiesOnEachWriteEvenOfTheSameValue)
{
    launch();
    int notified = 0;
    QObject::connect(
        viewModel.get(), &AppState::quickInputChanged, viewModel.get(), [&] { ++notified; });
    viewModel->setQuickInput(u"same"_s);
    viewModel->setQuickInput(u"same"_s);
    EXPECT_EQ(notified, 2);
}

TEST_F(StartUpTest, storedSelectionOfADeletedActionFallsToTheFirstInDisplayOrderAndIsSaved)
{
    storeDocument(kLayoutKey, "{\"selectedActionID\":\"99999999-9999-4999-8999-999999999999\"}");
    launch();
    const QUuid expected = actionNamed(u"One-Sentence Summary"_s).id;
    EXPECT_EQ(viewModel->selectedActionID(), expected);
    EXPECT_EQ(storedDocument(kLayoutKey)["selectedActionID"], uuidText(expected).toStdString());
}

TEST_F(StartUpTest, storedSelectionOfAVisibleActionStandsAndNothingIsWritten)
{
    launch();
    const QUuid chosen = actionNamed(u"Git Ideas"_s).id;
    const QByteArray layout =
        "{\"selectedActionID\":\"" + uuidText(chosen).toLatin1() + "\", \"note\":1}";
    domain->setBytes(kLayoutKey, layout);
    launch();
    EXPECT_EQ(viewModel->selectedActionID(), chosen);
    EXPECT_EQ(domain->bytes(kLayoutKey), layout);
}

TEST_F(StartUpTest, storedSelectionOfAHiddenActionIsReplaced)
{
    domain->setBytes(kActionsKey,
        '[' + actionJson(first, "Hidden", "\"actionDestination\":\"mailSearchMessages\"") + ']');
    domain->setBytes(kLayoutKey, QByteArray("{\"selectedActionID\":\"") + first + "\"}");
    launch();
    EXPECT_EQ(viewModel->selectedActionID(), actionNamed(u"One-Sentence Summary"_s).id);
    EXPECT_TRUE(hasActionNamed(u"Hidden"_s));
}

TEST_F(StartUpTest, pasteAutomationIsSwitchedOnOnceAndALaterChoiceStands)
{
    storeDocument(kOptionsKey, "{\"autoRunOnPaste\":false,\"autoCopyResult\":true}");
    launch();
    EXPECT_EQ(viewModel->homeAutomationOptions(), (HomeAutomationOptions{true, true}));
    EXPECT_EQ(storedDocument(kOptionsKey)["autoRunOnPaste"], true);
    EXPECT_TRUE(domain->boolean(kPasteMigrationKey));

    viewModel->setHomeAutomationOptions({false, true});
    viewModel->library().saveAutomationOptions();
    launch();
    EXPECT_EQ(viewModel->homeAutomationOptions(), (HomeAutomationOptions{false, true}));
}

TEST_F(StartUpTest, ledgerOfYesterdayGivesWayToAnEmptyOneOfTodayAndIsSaved)
{
    storeDocument(kLedgerKey,
        "{\"dayKey\":\"2026-02-19\",\"entries\":[{\"provider\":\"openAI\",\"modelID\":\"gpt-5\","
        "\"inputTokens\":1,\"outputTokens\":1,\"totalTokens\":2}]}");
    launch();
    EXPECT_EQ(viewModel->dailyUsageLedger().dayKey, u"2026-02-20"_s);
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
}

TEST_F(StartUpTest, ledgerOfTodayIsKept)
{
    storeDocument(kLedgerKey,
        "{\"dayKey\":\"2026-02-20\",\"entries\":[{\"provider\":\"openAI\",\"modelID\":\"gpt-5\","
        "\"inputTokens\":1,\"outputTokens\":1,\"totalTokens\":2}]}");
    launch();
    EXPECT_EQ(viewModel->dailyUsageLedger().entries.size(), 1);
}

TEST_F(StartUpTest, systemActionInPdfFormatIsShownAndStoredAsText)
{
    domain->setBytes(kActionsKey,
        '['
            + actionJson(
                first, "Mail It", "\"outputFormat\":\"pdf\",\"actionDestination\":\"mailCompose\"")
            + ']');
    launch();
    EXPECT_EQ(actionNamed(u"Mail It"_s).outputFormat, OutputFormat::Text);
    EXPECT_EQ(storedActionNamed("Mail It")["outputFormat"], "text");
}

TEST_F(StartUpTest, missingBuiltInActionsAreAddedAndTheListIsWrittenBack)
{
    domain->setBytes(kActionsKey, '[' + actionJson(first, "Foo") + ']');
    launch();
    EXPECT_EQ(viewModel->actions().size(), 23);
    EXPECT_EQ(viewModel->actions().first().name, u"Foo"_s);
    EXPECT_EQ(viewModel->actions().first().sortOrder, 0);
    EXPECT_EQ(storedDocument(kActionsKey).size(), 23U);
}

TEST_F(StartUpTest, listThatNeedsNoChangeIsNotWrittenBack)
{
    launch();
    const auto stored = domain->bytes(kActionsKey);
    const QByteArray spaced = QByteArray(*stored).replace("[{\"id\"", "[ {\"id\"");
    domain->setBytes(kActionsKey, spaced);
    launch();
    EXPECT_EQ(domain->bytes(kActionsKey), spaced);
}

TEST_F(StartUpTest, deletedBuiltInActionReturnsAtTheNextStart)
{
    launch();
    viewModel->library().deleteAction(actionNamed(u"Git Ideas"_s));
    EXPECT_FALSE(hasActionNamed(u"Git Ideas"_s));
    launch();
    EXPECT_TRUE(hasActionNamed(u"Git Ideas"_s));
}

TEST_F(StartUpTest, olderDocumentsLoadAndAreRewrittenOnceInTodaysForm)
{
    storeDocument(kActionsKey,
        "[{\"name\":\"Old\",\"systemAction\":{\"kind\":\"calendarCreateEvent\"},"
        "\"executionKind\":\"system\",\"outputFormat\":\"pdf\"}]");
    storeDocument(kSettingsKey, "{\"defaultModel\":\"gpt-4o\",\"openAIAPIKey\":\" sk-old \"}");
    launch();
    const Json action = storedActionNamed("Old");
    EXPECT_FALSE(action.contains("systemAction"));
    EXPECT_FALSE(action.contains("executionKind"));
    EXPECT_EQ(action["actionDestination"]["system"], "calendarCreateEvent");
    const Json settings = storedDocument(kSettingsKey);
    EXPECT_EQ(settings["defaultOpenAIModelID"], "gpt-4o");
    EXPECT_FALSE(settings.contains("openAIAPIKey"));
    EXPECT_FALSE(settings.contains("defaultModel"));

    const auto rewritten = domain->bytes(kActionsKey);
    launch();
    EXPECT_EQ(domain->bytes(kActionsKey), rewritten);
}

TEST_F(StartUpTest, featureFlagIsOnUntilItIsSwitchedOff)
{
    launch();
    EXPECT_TRUE(viewModel->newRunExperienceEnabled());
    EXPECT_FALSE(domain->holds(kNewRunKey));
    viewModel->library().setNewRunExperienceEnabled(true);
    EXPECT_FALSE(domain->holds(kNewRunKey)) << "an unchanged flag is not written";
    viewModel->library().setNewRunExperienceEnabled(false);
    launch();
    EXPECT_FALSE(viewModel->newRunExperienceEnabled());
}

TEST_F(StartUpTest, layoutComesBack)
{
    launch();
    viewModel->library().selectAction(actionNamed(u"Git Ideas"_s).id);
    viewModel->library().setEngineRoomSection(EngineRoomSection::Advanced);
    viewModel->library().openMoreSheet();
    launch();
    EXPECT_EQ(viewModel->selectedActionID(), actionNamed(u"Git Ideas"_s).id);
    EXPECT_EQ(viewModel->recentActionIDs(), QList<QUuid>{actionNamed(u"Git Ideas"_s).id});
    EXPECT_EQ(viewModel->engineRoomSection(), EngineRoomSection::Advanced);
    EXPECT_TRUE(viewModel->homeHintState().hasSeenMoreMenuHint);
    EXPECT_TRUE(viewModel->homeHintState().hasSeenChangeActionHint);
    EXPECT_FALSE(viewModel->homeHintState().hasSeenRunClipboardHint);
    EXPECT_FALSE(viewModel->isMoreSheetPresented()) << "sheets do not come back";
}

TEST_F(StartUpTest, garbageUnderEveryKeyStartsWithDefaultsAndSaysNothing)
{
    for (const char *key : {kActionsKey, kLayoutKey, kOptionsKey, kSettingsKey, kConnectionsKey,
             kLedgerKey, kPasteMigrationKey, kNewRunKey}) {
        storeDocument(key, "\xFF{[garbage");
    }
    launch();
    EXPECT_EQ(viewModel->actions().size(), 22);
    EXPECT_EQ(viewModel->providerSettings(), defaultProviderSettings());
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(StartUpTest, startAsksTheSecretStoreOnceAndReadsNoKey)
{
    keys->keys[AIProvider::OpenAI] = "sk-test";
    launch();
    EXPECT_EQ(keys->count(CredentialCall::Operation::ListStored), 1);
    EXPECT_EQ(keys->count(CredentialCall::Operation::Read), 0);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    for (const CredentialCall &call : keys->calls) {
        EXPECT_LE(call.bound, 1s);
    }
}

TEST_F(StartUpTest, availabilityOfTheOnDeviceModelIsAskedAtStart)
{
    model->general = OnDeviceAvailability::NotEnabled;
    launch();
    EXPECT_EQ(viewModel->appleIntelligenceStatus(),
        (AppleIntelligenceStatusSnapshot{
            false, u"Unavailable"_s, u"Enable Apple Intelligence in system settings"_s}));
    model->general = OnDeviceAvailability::Available;
    viewModel->connections().refreshAppleIntelligenceStatus();
    EXPECT_EQ(viewModel->appleIntelligenceStatus(),
        (AppleIntelligenceStatusSnapshot{true, u"Available"_s, u"Ready on this Mac"_s}));
}

TEST_F(StartUpTest, dayTurnsAtLocalMidnight)
{
    const ScopedVariable zone("TZ", "Asia/Tokyo");
    launch();
    EXPECT_EQ(viewModel->dailyUsageLedger().dayKey, u"2026-02-21"_s);
}

} // namespace
} // namespace velarc
