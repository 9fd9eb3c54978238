#include "base/errors.h"
#include "support/app_world.h"

namespace velarc {
namespace {

using Operation = CredentialCall::Operation;

struct Outcome
{
    bool ended = false;
    std::optional<QString> sentence;
    std::exception_ptr failure;
};

QCoro::Task<void> keep(QCoro::Task<std::optional<QString>> task, std::shared_ptr<Outcome> outcome)
{
    try {
        outcome->sentence = co_await task;
    } catch (...) {
        outcome->failure = std::current_exception();
    }
    outcome->ended = true;
}

class ConnectionsTest : public AppWorld
{
protected:
    ConnectionsTest() { launch(); }

    std::shared_ptr<Outcome> outcome = std::make_shared<Outcome>();
    std::stop_source stop;

    Connections &connections() { return viewModel->connections(); }

    void connect(AIProvider provider, const QByteArray &key, const QString &model = {},
        ConnectFor use = ConnectFor::ThisProviderOnly)
    {
        ConnectRequest request{provider, Secret(key), model, use};
        static_cast<void>(
            keep(connections().connectProvider(std::move(request), stop.get_token()), outcome));
        turnEventLoop();
    }

    void disconnect(AIProvider provider)
    {
        static_cast<void>(
            keep(connections().disconnectProvider(provider, stop.get_token()), outcome));
        turnEventLoop();
    }

    [[nodiscard]] ProviderConnectionInfo info(AIProvider provider) const
    {
        const auto &state = viewModel->providerConnections();
        return provider == AIProvider::OpenAI ? state.openAI
            : provider == AIProvider::Gemini  ? state.gemini
                                              : state.anthropic;
    }

    void setInfo(AIProvider provider, const ProviderConnectionInfo &value)
    {
        ProviderConnectionState state = viewModel->providerConnections();
        (provider == AIProvider::OpenAI          ? state.openAI
                : provider == AIProvider::Gemini ? state.gemini
                                                 : state.anthropic) = value;
        viewModel->setProviderConnections(state);
        store->saveProviderConnections(state);
    }
};

TEST_F(ConnectionsTest, verifiedKeyIsStoredTrimmedAndTheEngineIsConnected)
{
    viewModel->setSuggestedConnectionProvider(AIProvider::OpenAI);
    connect(AIProvider::OpenAI, " sk-good\n", u" gpt-4o "_s);
    EXPECT_TRUE(outcome->ended);
    EXPECT_EQ(outcome->sentence, std::nullopt);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), "sk-good");
    EXPECT_EQ(info(AIProvider::OpenAI), (ProviderConnectionInfo{true, clock->now()}));
    EXPECT_EQ(store->loadProviderConnections().openAI.isConnected, true);
    EXPECT_EQ(viewModel->providerSettings().defaultOpenAIModelID, u"gpt-4o"_s);
    EXPECT_EQ(store->loadProviderSettings().defaultOpenAIModelID, u"gpt-4o"_s);
    EXPECT_EQ(note(), u"OpenAI connected successfully."_s);
    EXPECT_EQ(viewModel->suggestedConnectionProvider(), std::nullopt);
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
}

TEST_F(ConnectionsTest, verificationIsOneShortGenerationOnTheModel)
{
    connect(AIProvider::OpenAI, "sk", u"gpt-4o"_s);
    EXPECT_EQ(openAI->textRequests.first().prompt, u"Reply with OK."_s);
    EXPECT_EQ(openAI->textRequests.first().model, u"gpt-4o"_s);
    EXPECT_EQ(openAI->textRequests.first().apiKey.bytes(), QByteArrayView("sk"));
    EXPECT_TRUE(openAI->textRequests.first().attachments.isEmpty());
    EXPECT_EQ(openAI->tokenLimits, QList<int>{64});
    connect(AIProvider::Anthropic, "sk-ant");
    EXPECT_EQ(anthropic->tokenLimits, QList<int>{24});
    EXPECT_EQ(anthropic->textRequests.first().model, u"claude-opus-4-1-20250805"_s);
    connect(AIProvider::Gemini, "AIza");
    EXPECT_EQ(gemini->formats, QList<OutputFormat>{OutputFormat::Text});
    EXPECT_EQ(gemini->textRequests.first().model, u"gemini-2.5-flash"_s);
}

TEST_F(ConnectionsTest, blankModelIsTheEnginesLiteralDefaultWhateverTheSettingsSay)
{
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultOpenAIModelID = u"gpt-4o"_s;
    viewModel->setProviderSettings(settings);
    connect(AIProvider::OpenAI, "sk", u"  "_s);
    EXPECT_EQ(openAI->textRequests.first().model, u"gpt-5"_s);
    EXPECT_EQ(viewModel->providerSettings().defaultOpenAIModelID, u"gpt-5"_s);
}

TEST_F(ConnectionsTest, blankKeyIsAskedForAndNothingElseHappens)
{
    connect(AIProvider::OpenAI, " \n");
    EXPECT_EQ(outcome->sentence, u"Paste your API key to continue."_s);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(ConnectionsTest, engineThatNeedsNoKeyCannotBeConnected)
{
    connect(AIProvider::LocalFallback, "key");
    EXPECT_EQ(outcome->sentence, u"Only OpenAI, Gemini, and Anthropic require connection setup."_s);
}

TEST_F(ConnectionsTest, failedVerificationKeepsTheEarlierKeyAndTheNextStartShowsItConnected)
{
    keys->keys[AIProvider::Gemini] = "earlier";
    setInfo(AIProvider::Gemini, {true, clock->now()});
    gemini->answer.failure = failureOf(UserFacingError(u"API key not valid."_s));
    connect(AIProvider::Gemini, "typed");
    EXPECT_EQ(outcome->sentence, u"API key not valid."_s);
    EXPECT_EQ(info(AIProvider::Gemini), ProviderConnectionInfo());
    EXPECT_FALSE(store->loadProviderConnections().gemini.isConnected);
    EXPECT_EQ(keys->storedKey(AIProvider::Gemini), "earlier");
    EXPECT_EQ(keys->count(Operation::Save), 0);
    launch();
    EXPECT_EQ(info(AIProvider::Gemini), (ProviderConnectionInfo{true, std::nullopt}));
}

TEST_F(ConnectionsTest, keyThatCannotBeStoredLeavesTheEngineUnconnected)
{
    keys->failure = CredentialStoreError::keychain(102);
    connect(AIProvider::OpenAI, "sk");
    EXPECT_EQ(outcome->sentence, u"Keychain error (102)."_s);
    EXPECT_EQ(info(AIProvider::OpenAI), ProviderConnectionInfo());
}

TEST_F(ConnectionsTest, connectForEverythingMakesItTheDefaultOfEveryAction)
{
    connect(AIProvider::Anthropic, "sk-ant", {}, ConnectFor::Everything);
    EXPECT_EQ(viewModel->providerSettings().defaultProvider, AIProvider::Anthropic);
    EXPECT_EQ(store->loadProviderSettings().defaultProvider, AIProvider::Anthropic);
    for (const AIAction &action : store->loadActions()) {
        EXPECT_EQ(action.provider, AIProvider::UseDefault);
        EXPECT_EQ(action.modelOverrideID, std::nullopt);
    }
    EXPECT_EQ(note(), u"Anthropic connected successfully."_s);
}

TEST_F(ConnectionsTest, connectThatIsStoppedWritesNothing)
{
    openAI->answer.gate.close();
    connect(AIProvider::OpenAI, "sk");
    stop.request_stop();
    EXPECT_FALSE(outcome->ended);
    turnEventLoop();
    ASSERT_TRUE(outcome->failure);
    EXPECT_THROW(std::rethrow_exception(outcome->failure), CancellationError);
    EXPECT_EQ(info(AIProvider::OpenAI), ProviderConnectionInfo());
    EXPECT_EQ(keys->count(Operation::Save), 0);
}

TEST_F(ConnectionsTest, stateObjectMayGoWhileAKeyIsVerified)
{
    openAI->answer.gate.close();
    openAI->answer.gate.ignoreStops();
    connect(AIProvider::OpenAI, "sk");
    viewModel.reset();
    openAI->answer.gate.open();
    turnEventLoop();
    EXPECT_TRUE(outcome->failure);
    EXPECT_EQ(keys->count(Operation::Save), 0);
}

TEST_F(ConnectionsTest, disconnectRemovesTheKeyAndTheDefaultFallsToTheOnDeviceEngine)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    setInfo(AIProvider::OpenAI, {true, clock->now()});
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultProvider = AIProvider::OpenAI;
    settings.enableAppleIntelligence = false;
    viewModel->setProviderSettings(settings);
    disconnect(AIProvider::OpenAI);
    EXPECT_EQ(outcome->sentence, std::nullopt);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(info(AIProvider::OpenAI), ProviderConnectionInfo());
    EXPECT_EQ(viewModel->providerSettings().defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_EQ(store->loadProviderSettings().defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_EQ(note(), u"OpenAI disconnected."_s);
}

TEST_F(ConnectionsTest, disconnectOfAnotherEngineLeavesTheDefault)
{
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultProvider = AIProvider::OpenAI;
    viewModel->setProviderSettings(settings);
    disconnect(AIProvider::Gemini);
    EXPECT_EQ(viewModel->providerSettings().defaultProvider, AIProvider::OpenAI);
}

TEST_F(ConnectionsTest, disconnectOfAnEngineWithoutAKeyChangesNothing)
{
    disconnect(AIProvider::LocalFallback);
    EXPECT_EQ(outcome->sentence, u"This provider does not require a stored credential."_s);
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(ConnectionsTest, disconnectThatFailsChangesNothing)
{
    setInfo(AIProvider::OpenAI, {true, std::nullopt});
    keys->failure = CredentialStoreError::keychain(102);
    disconnect(AIProvider::OpenAI);
    EXPECT_EQ(outcome->sentence, u"Keychain error (102)."_s);
    EXPECT_TRUE(info(AIProvider::OpenAI).isConnected);
}

TEST_F(ConnectionsTest, legacyKeyMovesIntoTheSecretStoreOnce)
{
    storeDocument(kSettingsKey, "{\"openAIAPIKey\":\"  sk-old  \"}");
    launch();
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), "sk-old");
    EXPECT_EQ(info(AIProvider::OpenAI), (ProviderConnectionInfo{true, clock->now()}));
    EXPECT_EQ(viewModel->providerSettings().legacyOpenAIAPIKey, std::nullopt);
    EXPECT_FALSE(storedDocument(kSettingsKey).contains("openAIAPIKey"));
    const qsizetype saves = keys->count(Operation::SaveWithoutPrompting);
    launch();
    EXPECT_EQ(keys->count(Operation::SaveWithoutPrompting), saves);
}

TEST_F(ConnectionsTest, legacyKeyOfBlanksIsDroppedWithoutTouchingAnything)
{
    storeDocument(kSettingsKey, "{\"openAIAPIKey\":\"   \"}");
    launch();
    EXPECT_EQ(keys->count(Operation::SaveWithoutPrompting), 0);
    EXPECT_EQ(info(AIProvider::OpenAI), ProviderConnectionInfo());
    EXPECT_FALSE(storedDocument(kSettingsKey).contains("openAIAPIKey"));
}

TEST_F(ConnectionsTest, legacyKeyThatCannotBeMovedIsGoneAndTheNoteSaysSo)
{
    storeDocument(kSettingsKey, "{\"openAIAPIKey\":\"sk-old\"}");
    keys->failure = CredentialStoreError::keychain(202);
    launch();
    EXPECT_EQ(note(), u"Could not migrate existing OpenAI key to Keychain."_s);
    EXPECT_FALSE(storedDocument(kSettingsKey).contains("openAIAPIKey"));
    EXPECT_FALSE(QString::fromUtf8(*domain->bytes(kSettingsKey)).contains(u"sk-old"_s));
}

struct ReconcileRow
{
    bool keyIsStored;
    ProviderConnectionInfo stored;
    ProviderConnectionInfo expected;
};

class ReconcileTest
    : public ConnectionsTest
    , public ::testing::WithParamInterface<ReconcileRow>
{
};

TEST_P(ReconcileTest, flagFollowsTheKeyThatIsReallyStored)
{
    for (const AIProvider provider :
        {AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic}) {
        if (GetParam().keyIsStored) {
            keys->keys[provider] = "key";
        }
        setInfo(provider, GetParam().stored);
    }
    launch();
    for (const AIProvider provider :
        {AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic}) {
        EXPECT_EQ(info(provider), GetParam().expected);
    }
    EXPECT_EQ(store->loadProviderConnections(), viewModel->providerConnections());
}

const Instant kVerified{std::chrono::seconds(1'771'000'000)};

INSTANTIATE_TEST_SUITE_P(EveryRow, ReconcileTest,
    ::testing::Values(ReconcileRow{false, {true, kVerified}, {}},
        ReconcileRow{false, {false, std::nullopt}, {}},
        ReconcileRow{true, {false, std::nullopt}, {true, std::nullopt}},
        ReconcileRow{true, {true, kVerified}, {true, kVerified}}));

TEST_F(ConnectionsTest, reconciliationThatChangesNothingWritesNothing)
{
    domain->remove(kConnectionsKey);
    launch();
    EXPECT_FALSE(domain->holds(kConnectionsKey));
}

TEST_F(ConnectionsTest, connectSheetOpensForEnginesThatNeedAKeyOnly)
{
    connections().presentConnectSheet(AIProvider::LocalFallback);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), std::nullopt);
    connections().presentConnectSheet(AIProvider::Gemini);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::Gemini);
}

TEST_F(ConnectionsTest, statusTextsTellWhatIsConnectedAndSinceWhen)
{
    EXPECT_EQ(connections().connectionStatusText({}), u"Not connected"_s);
    EXPECT_EQ(connections().connectionStatusText({true, std::nullopt}), u"Connected"_s);
    EXPECT_EQ(connections().connectionStatusText({true, clock->now() - 2h}),
        u"Connected \u2022 Verified 2 hr. ago"_s);
}

TEST_F(ConnectionsTest, everyEngineHasItsStatusText)
{
    EXPECT_EQ(
        connections().providerStatusText(AIProvider::UseDefault), u"Uses Engine Room default"_s);
    EXPECT_EQ(connections().providerStatusText(AIProvider::AppleIntelligence),
        u"Available: Ready on this Mac"_s);
    ProviderSettings settings = viewModel->providerSettings();
    settings.enableAppleIntelligence = false;
    viewModel->setProviderSettings(settings);
    EXPECT_EQ(connections().providerStatusText(AIProvider::AppleIntelligence),
        u"Disabled in app settings"_s);
    EXPECT_EQ(connections().providerStatusText(AIProvider::OpenAI), u"Not connected"_s);
    EXPECT_EQ(
        connections().providerStatusText(AIProvider::LocalFallback), u"Always available offline"_s);
    EXPECT_TRUE(connections().isProviderConnected(AIProvider::LocalFallback));
    EXPECT_FALSE(connections().isProviderConnected(AIProvider::Gemini));
}

TEST_F(ConnectionsTest, savingADefaultEngineThatIsNotConnectedSaysSoAndStillSaves)
{
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultProvider = AIProvider::Gemini;
    viewModel->setProviderSettings(settings);
    connections().saveProviderSettings();
    EXPECT_EQ(note(), u"Gemini is selected as default, but not connected yet."_s);
    EXPECT_EQ(store->loadProviderSettings().defaultProvider, AIProvider::Gemini);
}

TEST_F(ConnectionsTest, savingAConnectedDefaultEngineSaysNothing)
{
    setInfo(AIProvider::Gemini, {true, std::nullopt});
    ProviderSettings settings = viewModel->providerSettings();
    settings.defaultProvider = AIProvider::Gemini;
    viewModel->setProviderSettings(settings);
    connections().saveProviderSettings();
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

TEST_F(ConnectionsTest, connectingThatNobodyAwaitsTellsItsEnd)
{
    QStringList told;
    const auto tell = [&](const std::optional<QString> &sentence) {
        told.append(sentence.value_or(u"done"_s));
    };
    connections().startConnecting({AIProvider::OpenAI, Secret("sk-1"), {}, {}}, tell);
    turnEventLoop();
    connections().startConnecting({AIProvider::OpenAI, Secret(" "), {}, {}}, tell);
    turnEventLoop();
    connections().startDisconnecting(AIProvider::OpenAI, tell);
    turnEventLoop();
    connections().startDisconnecting(AIProvider::LocalFallback, tell);
    turnEventLoop();
    EXPECT_EQ(told,
        QStringList({u"done"_s, u"Paste your API key to continue."_s, u"done"_s,
            u"This provider does not require a stored credential."_s}));
    EXPECT_EQ(scope->running(), 0U);
}

TEST_F(ConnectionsTest, connectingThatNobodyAwaitsEndsUntoldWithTheProgram)
{
    openAI->answer.gate.close();
    bool isTold = false;
    connections().startConnecting({AIProvider::OpenAI, Secret("sk-1"), {}, {}},
        [&](const std::optional<QString> & /*sentence*/) { isTold = true; });
    turnEventLoop();
    EXPECT_EQ(scope->running(), 1U);
    EXPECT_TRUE(scope->finish());
    EXPECT_FALSE(isTold);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
}

} // namespace
} // namespace velarc
