// What the main thread pays for loading and saving.

#include "base/uuid.h"
#include "store/local_store.h"
#include "store/sqlite_defaults_domain.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace velarc {

namespace {

// As long as those that users write: a prompt of some ten lines.
QList<AIAction> makeActions(int count)
{
    QList<AIAction> actions;
    actions.reserve(count);
    for (int number = 1; number <= count; ++number) {
        AIAction action;
        action.id = newUuid();
        action.name = QStringLiteral("Action %1").arg(number);
        action.icon = QStringLiteral("bolt.fill");
        action.colorHex = QStringLiteral("2563EB");
        action.systemPrompt =
            QStringLiteral("Return markdown with exactly these sections:\n").repeated(8)
            + QStringLiteral("{User_Input}");
        action.skills = {QStringLiteral("planning"), QStringLiteral("time-blocking")};
        action.sortOrder = number * 10;
        actions.append(action);
    }
    return actions;
}

class StoreOnDisk
{
public:
    StoreOnDisk()
        : store(std::make_shared<SqliteDefaultsDomain>(
                    QStringList{m_folder.filePath(QStringLiteral("velarc/suite.sqlite"))}, m_clock),
            [] { return makeActions(22); })
    {
    }

private:
    QTemporaryDir m_folder;
    SystemClock m_clock;

public:
    LocalStore store;
};

void loadActions(benchmark::State &state)
{
    const StoreOnDisk disk;
    disk.store.saveActions(makeActions(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(disk.store.loadActions());
    }
}
BENCHMARK(loadActions)->Arg(22)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void saveActions(benchmark::State &state)
{
    const StoreOnDisk disk;
    const auto actions = makeActions(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        disk.store.saveActions(actions);
    }
}
BENCHMARK(saveActions)->Arg(22)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void saveLayout(benchmark::State &state)
{
    const StoreOnDisk disk;
    disk.store.saveRecentActionIDs(
        {newUuid(), newUuid(), newUuid(), newUuid(), newUuid(), newUuid(), newUuid(), newUuid()});
    for (auto _ : state) {
        disk.store.saveSelectedActionID(newUuid());
    }
}
BENCHMARK(saveLayout)->Unit(benchmark::kMicrosecond);

// What every start pays before it can read anything.
void openDomain(benchmark::State &state)
{
    const QTemporaryDir folder;
    const SystemClock clock;
    const QStringList files{folder.filePath(QStringLiteral("suite.sqlite"))};
    SqliteDefaultsDomain(files, clock).setBoolean("made", true);
    for (auto _ : state) {
        SqliteDefaultsDomain domain(files, clock);
        benchmark::DoNotOptimize(domain.boolean("made"));
    }
}
BENCHMARK(openDomain)->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace velarc
