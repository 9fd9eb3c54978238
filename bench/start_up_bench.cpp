// What a start costs before the first frame, with libraries of several sizes.

#include "actions/catalogue.h"
#include "base/uuid.h"
#include "engines/on_device_services.h"
#include "run/app_view_model.h"
#include "run/windowless_seams.h"
#include "store/sqlite_defaults_domain.h"
#include "system_actions/system_actions.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace velarc {
namespace {

// A secret store that holds no key and answers at once.
class NoKeys final : public CredentialStore
{
public:
    QCoro::Task<std::optional<Secret>> apiKey(AIProvider, std::stop_token) override
    {
        co_return std::nullopt;
    }
    QCoro::Task<void> saveAPIKey(Secret, AIProvider, std::stop_token) override { co_return; }
    QCoro::Task<void> deleteAPIKey(AIProvider, std::stop_token) override { co_return; }
    QList<AIProvider> providersWithStoredKey(std::chrono::milliseconds) override { return {}; }
    void saveWithoutPrompting(const Secret &, AIProvider, std::chrono::milliseconds) override {}
};

// A desktop that does nothing; a start asks nothing of it.
class NoSystemActions final : public SystemActionExecuting
{
public:
    QCoro::Task<SystemActionExecutionResult> execute(
        SystemDestinationKind, QString, std::stop_token) override
    {
        co_return SystemActionExecutionResult();
    }
};

AppServices servicesOver(std::shared_ptr<const LocalStore> store)
{
    AppServices services;
    services.clock = std::make_shared<SystemClock>();
    services.scope = std::make_shared<TaskScope>();
    services.store = std::move(store);
    services.onDeviceModel = absentOnDeviceModel();
    services.credentialStore = std::make_shared<NoKeys>();
    const auto clipboard = std::make_shared<EmptyClipboard>();
    services.clipboard = clipboard;
    services.clipboardText = clipboard;
    services.clipboardWriting = clipboard;
    services.files = std::make_shared<NoFiles>();
    services.pdfExport = std::make_shared<NoPdfExport>();
    services.systemActions = std::make_shared<NoSystemActions>();
    return services;
}

QList<AIAction> libraryOf(int count)
{
    const QList<AIAction> pattern = builtInActions();
    QList<AIAction> actions = pattern;
    while (actions.size() < count) {
        AIAction action = pattern.at(actions.size() % pattern.size());
        action.id = newUuid();
        action.name += QLatin1Char(' ') + QString::number(actions.size());
        action.isPinned = false;
        actions.append(action);
    }
    return actions;
}

// The store is opened and the state object built, as at each start of the program.
void startOfTheStateObject(benchmark::State &state)
{
    const QTemporaryDir folder;
    const SystemClock clock;
    const QStringList files{folder.filePath(QStringLiteral("store.sqlite"))};
    LocalStore(std::make_shared<SqliteDefaultsDomain>(files, clock), &builtInActions)
        .saveActions(libraryOf(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        const auto store = std::make_shared<const LocalStore>(
            std::make_shared<SqliteDefaultsDomain>(files, clock), &builtInActions);
        const AppViewModel viewModel(servicesOver(store));
        benchmark::DoNotOptimize(viewModel.actions().size());
    }
}
BENCHMARK(startOfTheStateObject)->Arg(22)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velarc
