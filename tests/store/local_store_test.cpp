// LocalStore over the domain on disk and over the one in memory.

#include "store_fixture.h"

#include "actions/action_json.h"
#include "base/uuid.h"
#include "records/json_date.h"
#include "store/memory_defaults_domain.h"
#include "support/printers.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr QByteArrayView kActions = "velarc.actions.v1";
constexpr QByteArrayView kProviderSettings = "velarc.providerSettings.v1";
constexpr QByteArrayView kConnections = "velarc.provider.connections.v1";
constexpr QByteArrayView kUsage = "velarc.usage.daily.v1";
constexpr QByteArrayView kOptions = "velarc.home.automationOptions.v1";
constexpr QByteArrayView kLayout = "velarc.homeLayout.v1";
constexpr QByteArrayView kNewRun = "velarc.feature.newRunExperienceEnabled.v1";
constexpr QByteArrayView kPasteMigration = "velarc.migration.homeAutomationPasteV1";
constexpr QByteArrayView kHandoff = "velarc.share.pendingHandoff.v1";
constexpr QByteArrayView kResult = "velarc.share.latestResult.v1";

const QUuid kFirst = *uuidFromText(u"6F9619FF-8B86-D011-B42D-00CF4FC964FF");
const QUuid kSecond = *uuidFromText(u"00000000-0000-4000-8000-000000000001");

enum class Kind
{
    Memory,
    Disk
};

class LocalStoreTest
    : public StoreFolder
    , public ::testing::WithParamInterface<Kind>
{
protected:
    std::shared_ptr<DefaultsDomain> domain = makeDomain();
    const QList<AIAction> firstActions = numberedActions(22);
    int timesAsked = 0; // how often the first actions were asked for
    LocalStore store{domain, [this] {
                         ++timesAsked;
                         return firstActions;
                     }};
    const Instant now = clock.now();

    void put(QByteArrayView key, const char *document) { domain->setBytes(key, document); }

    [[nodiscard]] Json standing(QByteArrayView key) const
    {
        return parseJson(domain->bytes(key).value_or("null"));
    }

private:
    std::shared_ptr<DefaultsDomain> makeDomain() const
    {
        if (GetParam() == Kind::Memory) {
            return std::make_shared<MemoryDefaultsDomain>();
        }
        return openDomain();
    }
};

// What a load gives, of whatever type, reduced to whether it is the default.
struct StoredKey
{
    const char *name;
    QByteArrayView key;
    bool (*isDefault)(const LocalStore &store, Instant now);
    const char *good; // reads as something else than the default
    std::vector<const char *> bad; // each of a wrong type, with an unknown spelling, or the like
};

const std::vector<StoredKey> &storedKeys()
{
    static const std::vector<StoredKey> kKeys{
        {"providerSettings", kProviderSettings,
            [](const LocalStore &store, Instant) {
                return store.loadProviderSettings() == defaultProviderSettings();
            },
            R"({"defaultProvider":"gemini","unknown":1})",
            {R"({"defaultProvider":"mistral"})", R"({"enableAppleIntelligence":"yes"})",
                R"({"appleUseCase":1})", "[]", "null", "\"text\"", "1"}},
        {"providerConnections", kConnections,
            [](const LocalStore &store, Instant) {
                return store.loadProviderConnections() == ProviderConnectionState();
            },
            R"({"openAI":{"isConnected":true,"unknown":1},"unknown":{}})",
            {R"({"openAI":{"isConnected":true},"gemini":{}})",
                R"({"openAI":{"isConnected":true,"lastVerifiedAt":1e300}})", R"({"openAI":true})",
                "[]"}},
        {"usageLedger", kUsage,
            [](const LocalStore &store, Instant now) {
                return store.loadUsageLedger(now) == DailyUsageLedger{u"2026-02-20"_s, {}};
            },
            R"({"dayKey":"2026-02-20","unknown":1,"entries":[{"provider":"openAI","modelID":"m",)"
            R"("inputTokens":1,"outputTokens":2,"totalTokens":3,"unknown":1}]})",
            {R"({"dayKey":"2026-02-20"})", R"({"entries":[]})",
                R"({"dayKey":"2026-02-20","entries":[{"provider":"mistral","modelID":"m",)"
                R"("inputTokens":1,"outputTokens":2,"totalTokens":3}]})",
                R"({"dayKey":"2026-02-20","entries":[{"provider":"openAI","modelID":"m",)"
                R"("inputTokens":1.5,"outputTokens":2,"totalTokens":3}]})",
                "[]"}},
        {"automationOptions", kOptions,
            [](const LocalStore &store, Instant) {
                return store.loadAutomationOptions() == HomeAutomationOptions{true, false};
            },
            R"({"autoCopyResult":true,"unknown":1})",
            {R"({"autoCopyResult":1})", R"({"autoRunOnPaste":"no","autoCopyResult":true})", "[]"}},
        {"homeLayout", kLayout,
            [](const LocalStore &store, Instant) {
                return store.loadHomeLayout() == HomeLayoutState();
            },
            R"({"lastEngineRoomSection":"advanced","unknown":1})",
            {R"({"lastEngineRoomSection":"billing"})",
                R"({"hintState":{"hasSeenMoreMenuHint":true}})",
                R"({"recentActionIDs":["x"],"lastEngineRoomSection":"advanced"})",
                R"({"selectedActionID":1})", "[]"}},
        {"pendingHandoff", kHandoff,
            [](const LocalStore &store, Instant) { return !store.loadPendingHandoff(); },
            R"({"inputText":"x","createdAt":0,"unknown":1})",
            {R"({"inputText":"x"})", R"({"createdAt":0})", R"({"inputText":1,"createdAt":0})",
                R"({"inputText":"x","createdAt":"0"})", "[]"}},
        {"latestResult", kResult,
            [](const LocalStore &store, Instant) { return !store.loadLatestResult(); },
            R"({"actionName":"n","output":"o","createdAt":0,"unknown":1})",
            {R"({"actionName":"n","output":"o"})", R"({"output":"o","createdAt":0})",
                R"({"actionName":"n","createdAt":0})",
                R"({"actionName":"n","output":"o","createdAt":0,"actionID":"x"})", "[]"}},
    };
    return kKeys;
}

} // namespace

TEST_P(LocalStoreTest, everyDocumentThatIsMissingReadsAsItsDefault)
{
    for (const StoredKey &stored : storedKeys()) {
        EXPECT_TRUE(stored.isDefault(store, now)) << stored.name;
        EXPECT_FALSE(domain->holds(stored.key)) << stored.name << " was written by a load";
    }
}

TEST_P(LocalStoreTest, everyDocumentIsReadWithItsUnknownKeysIgnored)
{
    for (const StoredKey &stored : storedKeys()) {
        put(stored.key, stored.good);
        EXPECT_FALSE(stored.isDefault(store, now)) << stored.name;
    }
}

TEST_P(LocalStoreTest, everyDocumentThatCannotBeDecodedReadsAsItsDefaultAndStaysThere)
{
    for (const StoredKey &stored : storedKeys()) {
        std::vector<const char *> documents = stored.bad;
        for (const char *broken : {"", "{", "{}}", "{\"a\":\xff}", "not json", "{'a':1}"}) {
            documents.push_back(broken);
        }
        for (const char *document : documents) {
            SCOPED_TRACE(std::string(stored.name) + ": " + document);
            put(stored.key, document);
            EXPECT_TRUE(stored.isDefault(store, now));
            EXPECT_EQ(domain->bytes(stored.key), document);
        }
    }
}

TEST_P(LocalStoreTest, everyDocumentWhoseKeyHoldsABooleanReadsAsItsDefault)
{
    for (const StoredKey &stored : storedKeys()) {
        domain->setBoolean(stored.key, true);
        EXPECT_TRUE(stored.isDefault(store, now)) << stored.name;
    }
    domain->setBoolean(kActions, true);
    EXPECT_EQ(store.loadActions(), firstActions);
    EXPECT_EQ(store.loadActions(), firstActions);
    EXPECT_EQ(timesAsked, 1);
}

TEST_P(LocalStoreTest, emptyDomainGivesTheFirstActionsAndStoresThem)
{
    const auto actions = store.loadActions();
    EXPECT_EQ(actions.size(), 22);
    EXPECT_EQ(actions, firstActions);
    EXPECT_TRUE(domain->holds(kActions));
    EXPECT_EQ(decodeActions(standing(kActions)), firstActions);
    EXPECT_EQ(store.loadActions(), firstActions);
    EXPECT_EQ(timesAsked, 1);
}

TEST_P(LocalStoreTest, emptyListGivesTheFirstActionsAndStoresThem)
{
    put(kActions, "[]");
    EXPECT_EQ(store.loadActions(), firstActions);
    EXPECT_EQ(decodeActions(standing(kActions)), firstActions);
}

TEST_P(LocalStoreTest, listThatCannotBeDecodedIsReplacedByTheFirstActions)
{
    for (const char *document : {R"([{"provider":"mistral"}])",
             R"([{"name":"Good"},{"name":"Bad","outputFormat":"html"}])", R"([{"name":1}])",
             R"([1])", R"({})", R"({"name":"Not in a list"})", "null", "", "[", "nonsense"}) {
        SCOPED_TRACE(document);
        put(kActions, document);
        EXPECT_EQ(store.loadActions(), firstActions);
        EXPECT_EQ(decodeActions(standing(kActions)), firstActions);
    }
}

TEST_P(LocalStoreTest, storedListIsReturnedAndNothingIsWritten)
{
    constexpr auto kDocument = R"([{"name":"Foo","unknown":1}])";
    put(kActions, kDocument);
    const auto actions = store.loadActions();
    ASSERT_EQ(actions.size(), 1);
    EXPECT_EQ(actions.first().name, u"Foo"_s);
    EXPECT_EQ(domain->bytes(kActions), kDocument);
    EXPECT_EQ(timesAsked, 0);
}

TEST_P(LocalStoreTest, savedActionsAreReadBackInOrder)
{
    QList<AIAction> actions = numberedActions(3);
    actions[1].destination = ActionDestination::system(SystemDestinationKind::MailCompose);
    actions[1].modelOverrideID = u"gpt-5"_s;
    actions[2].skills = {u"ä"_s, u"😀"_s};
    std::reverse(actions.begin(), actions.end());
    store.saveActions(actions);
    EXPECT_EQ(store.loadActions(), actions);
    store.saveActions({});
    EXPECT_EQ(store.loadActions(), firstActions);
}

TEST_P(LocalStoreTest, listThatAnotherProcessStoresFirstIsTheOneThatIsKeptAndReturned)
{
    for (const char *before : {static_cast<const char *>(nullptr), "[]", "nonsense"}) {
        SCOPED_TRACE(before == nullptr ? "nothing" : before);
        domain->remove(kActions);
        if (before != nullptr) {
            put(kActions, before);
        }
        const auto othersActions = numberedActions(2);
        const LocalStore other(domain, [&] { return othersActions; });
        // The other process comes between this one's look and its write.
        const LocalStore late(domain, [&] {
            EXPECT_EQ(other.loadActions(), othersActions);
            return firstActions;
        });
        EXPECT_EQ(late.loadActions(), othersActions);
        EXPECT_EQ(decodeActions(standing(kActions)), othersActions);
    }
}

TEST_P(LocalStoreTest, savedSettingsAreReadBackWithoutTheLegacyKey)
{
    ProviderSettings settings;
    settings.defaultProvider = AIProvider::Anthropic;
    settings.appleUseCase = u"contentTagging"_s;
    settings.legacyOpenAIAPIKey = u"sk-secret"_s;
    store.saveProviderSettings(settings);
    EXPECT_EQ(standing(kProviderSettings).size(), 6U);
    EXPECT_FALSE(domain->bytes(kProviderSettings)->contains("sk-secret"));
    settings.legacyOpenAIAPIKey.reset();
    EXPECT_EQ(store.loadProviderSettings(), settings);
}

TEST_P(LocalStoreTest, savedConnectionsAreReadBack)
{
    ProviderConnectionState state;
    state.gemini = {true, now};
    store.saveProviderConnections(state);
    EXPECT_EQ(store.loadProviderConnections(), state);
    EXPECT_EQ(standing(kConnections)["gemini"]["lastVerifiedAt"], encodeDate(now));
}

TEST_P(LocalStoreTest, savedLedgerOfTodayIsReadBack)
{
    DailyUsageLedger ledger = emptyUsageLedger(now);
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {1, 2, 3}, now);
    store.saveUsageLedger(ledger);
    EXPECT_EQ(store.loadUsageLedger(now), ledger);
    EXPECT_EQ(standing(kUsage)["dayKey"], "2026-02-20");
}

TEST_P(LocalStoreTest, ledgerOfYesterdayReadsAsEmptyWithTodaysKeyAndStaysUntilTheNextSave)
{
    DailyUsageLedger yesterdays = emptyUsageLedger(now);
    yesterdays.record(AIProvider::OpenAI, u"gpt-5"_s, {1, 2, 3}, now);
    store.saveUsageLedger(yesterdays);
    const auto before = domain->bytes(kUsage);

    const auto loaded = store.loadUsageLedger(now + 24h);
    EXPECT_EQ(loaded, (DailyUsageLedger{u"2026-02-21"_s, {}}));
    EXPECT_EQ(domain->bytes(kUsage), before);
    store.saveUsageLedger(loaded);
    EXPECT_EQ(standing(kUsage)["dayKey"], "2026-02-21");
}

TEST_P(LocalStoreTest, ledgerOfALaterDayReadsAsEmptyToo)
{
    store.saveUsageLedger({u"2026-02-21"_s, {{AIProvider::OpenAI, u"m"_s, 1, 1, 2}}});
    EXPECT_EQ(store.loadUsageLedger(now), (DailyUsageLedger{u"2026-02-20"_s, {}}));
}

TEST_P(LocalStoreTest, savedOptionsAreReadBack)
{
    for (const HomeAutomationOptions &options : {HomeAutomationOptions{false, false},
             HomeAutomationOptions{true, true}, HomeAutomationOptions{false, true}}) {
        store.saveAutomationOptions(options);
        EXPECT_EQ(store.loadAutomationOptions(), options);
    }
}

TEST_P(LocalStoreTest, optionOfTheOlderFormDoesNotKeepPasteFromRunning)
{
    put(kOptions, R"({"autoRunOnDrop":false})");
    EXPECT_TRUE(store.loadAutomationOptions().autoRunOnPaste);
    store.saveAutomationOptions(store.loadAutomationOptions());
    EXPECT_EQ(domain->bytes(kOptions), R"({"autoRunOnPaste":true,"autoCopyResult":false})");
}

TEST_P(LocalStoreTest, emptyLayoutAndLayoutWithPartOfTheHintsAreTheDefaultLayout)
{
    put(kLayout, "{}");
    EXPECT_EQ(store.loadHomeLayout(), HomeLayoutState());
    put(kLayout, R"({"hintState":{"hasSeenMoreMenuHint":true}})");
    EXPECT_EQ(store.loadHomeLayout(), HomeLayoutState());
    EXPECT_FALSE(store.loadHomeLayout().hintState.hasSeenMoreMenuHint);
}

TEST_P(LocalStoreTest, eachSaverOfTheLayoutChangesItsFieldAlone)
{
    HomeLayoutState expected;
    store.saveSelectedActionID(kFirst);
    expected.selectedActionID = kFirst;
    EXPECT_EQ(store.loadHomeLayout(), expected);
    store.saveHintState({true, false, true});
    expected.hintState = {true, false, true};
    EXPECT_EQ(store.loadHomeLayout(), expected);
    store.saveRecentActionIDs({kSecond, kFirst});
    expected.recentActionIDs = {kSecond, kFirst};
    EXPECT_EQ(store.loadHomeLayout(), expected);
    store.saveLastEngineRoomSection(EngineRoomSection::DefaultEngine);
    expected.lastEngineRoomSection = EngineRoomSection::DefaultEngine;
    EXPECT_EQ(store.loadHomeLayout(), expected);
}

TEST_P(LocalStoreTest, selectionOfNoneLeavesItsKeyOutAndThreeKeysStand)
{
    store.saveSelectedActionID(kFirst);
    EXPECT_EQ(standing(kLayout).size(), 4U);
    store.saveSelectedActionID(std::nullopt);
    EXPECT_EQ(standing(kLayout).size(), 3U);
    EXPECT_FALSE(standing(kLayout).contains("selectedActionID"));
    EXPECT_EQ(store.loadHomeLayout().selectedActionID, std::nullopt);
}

TEST_P(LocalStoreTest, savingHintsOverACorruptLayoutReplacesTheWholeDocument)
{
    put(kLayout,
        R"({"selectedActionID":"6F9619FF-8B86-D011-B42D-00CF4FC964FF",)"
        R"("hintState":{"hasSeenMoreMenuHint":true}})");
    store.saveHintState({false, false, true});
    HomeLayoutState expected;
    expected.hintState = {false, false, true};
    EXPECT_EQ(store.loadHomeLayout(), expected);
    EXPECT_FALSE(standing(kLayout).contains("selectedActionID"));
}

TEST_P(LocalStoreTest, saverOfTheLayoutKeepsWhatAnotherProcessChangedMeanwhile)
{
    const LocalStore other(domain, [] { return QList<AIAction>(); });
    (void)store.loadHomeLayout();
    other.saveSelectedActionID(kSecond);
    store.saveHintState({true, true, true});
    EXPECT_EQ(other.loadHomeLayout().selectedActionID, kSecond);
    EXPECT_TRUE(other.loadHomeLayout().hintState.hasSeenMoreMenuHint);
}

TEST_P(LocalStoreTest, newRunExperienceIsOnUntilItIsSwitchedOff)
{
    EXPECT_TRUE(store.loadNewRunExperienceEnabled());
    EXPECT_FALSE(domain->holds(kNewRun));
    store.saveNewRunExperienceEnabled(false);
    EXPECT_FALSE(store.loadNewRunExperienceEnabled());
    store.saveNewRunExperienceEnabled(true);
    EXPECT_TRUE(store.loadNewRunExperienceEnabled());
    EXPECT_TRUE(domain->boolean(kNewRun));
}

TEST_P(LocalStoreTest, anythingThatStandsUnderTheFlagAndIsNotTrueIsFalse)
{
    put(kNewRun, "true");
    EXPECT_FALSE(store.loadNewRunExperienceEnabled());
}

TEST_P(LocalStoreTest, pasteMigrationIsDoneOnceItIsMarked)
{
    EXPECT_FALSE(store.loadPasteMigrationDone());
    put(kPasteMigration, "true");
    EXPECT_FALSE(store.loadPasteMigrationDone());
    store.savePasteMigrationDone();
    EXPECT_TRUE(store.loadPasteMigrationDone());
    EXPECT_TRUE(domain->boolean(kPasteMigration));
}

TEST_P(LocalStoreTest, pendingHandoffIsReadBackUntilItIsCleared)
{
    const ShareHandoffRequest request{kFirst, u"text"_s, u"Notes"_s, now};
    store.savePendingHandoff(request);
    EXPECT_EQ(store.loadPendingHandoff(), request);
    EXPECT_EQ(store.loadPendingHandoff(), request);
    store.clearPendingHandoff();
    EXPECT_EQ(store.loadPendingHandoff(), std::nullopt);
    EXPECT_FALSE(domain->holds(kHandoff));
}

TEST_P(LocalStoreTest, newHandoffReplacesTheOldOne)
{
    store.savePendingHandoff({kFirst, u"old"_s, u"Notes"_s, now});
    store.savePendingHandoff({std::nullopt, u"new"_s, std::nullopt, now + 1s});
    EXPECT_EQ(store.loadPendingHandoff(),
        (ShareHandoffRequest{std::nullopt, u"new"_s, std::nullopt, now + 1s}));
}

TEST_P(LocalStoreTest, latestResultStaysUntilItIsReplaced)
{
    const ShareResult result{std::nullopt, u"Summary"_s, u"One line."_s, now};
    store.saveLatestResult(result);
    EXPECT_EQ(store.loadLatestResult(), result);
    EXPECT_EQ(store.loadLatestResult(), result);
    EXPECT_EQ(store.loadPendingHandoff(), std::nullopt);
}

TEST_P(LocalStoreTest, everySaverWritesItsOwnKeyAndNoOther)
{
    const auto writes = [this](QByteArrayView key, auto save) {
        const auto fresh = std::make_shared<MemoryDefaultsDomain>();
        save(LocalStore(fresh, [this] { return firstActions; }));
        for (const QByteArrayView other : {kActions, kProviderSettings, kConnections, kUsage,
                 kOptions, kLayout, kNewRun, kPasteMigration, kHandoff, kResult}) {
            EXPECT_EQ(fresh->holds(other), other == key)
                << other.toByteArray().toStdString() << " for " << key.toByteArray().toStdString();
        }
    };
    writes(kActions, [&](const LocalStore &to) { to.saveActions(firstActions); });
    writes(kActions, [&](const LocalStore &to) { (void)to.loadActions(); });
    writes(kProviderSettings, [](const LocalStore &to) { to.saveProviderSettings({}); });
    writes(kConnections, [](const LocalStore &to) { to.saveProviderConnections({}); });
    writes(kUsage, [](const LocalStore &to) { to.saveUsageLedger({}); });
    writes(kOptions, [](const LocalStore &to) { to.saveAutomationOptions({}); });
    writes(kLayout, [](const LocalStore &to) { to.saveHintState({}); });
    writes(kLayout, [](const LocalStore &to) { to.saveSelectedActionID(kFirst); });
    writes(kLayout, [](const LocalStore &to) { to.saveRecentActionIDs({}); });
    writes(kLayout,
        [](const LocalStore &to) { to.saveLastEngineRoomSection(EngineRoomSection::Advanced); });
    writes(kNewRun, [](const LocalStore &to) { to.saveNewRunExperienceEnabled(false); });
    writes(kPasteMigration, [](const LocalStore &to) { to.savePasteMigrationDone(); });
    writes(kHandoff, [](const LocalStore &to) { to.savePendingHandoff({}); });
    writes(kResult, [](const LocalStore &to) { to.saveLatestResult({}); });
}

INSTANTIATE_TEST_SUITE_P(Over, LocalStoreTest, ::testing::Values(Kind::Memory, Kind::Disk),
    [](const auto &parameters) { return parameters.param == Kind::Memory ? "memory" : "disk"; });

} // namespace velarc
