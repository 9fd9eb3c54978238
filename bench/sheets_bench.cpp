// The sheets over the whole window: opening each for the first time and again, to its first frame,
// and a key press in the search of a large library.

#include "actions/catalogue.h"
#include "entry/demo/demo_engines.h"
#include "entry/velarc_app.h"
#include "store/memory_defaults_domain.h"
#include "ui/screens.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <benchmark/benchmark.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Show = void (*)(AppViewModel &, bool);

struct SheetRow
{
    const char *name;
    Show show;
};

constexpr std::array kSheets{
    SheetRow{"more", [](AppViewModel &state, bool on) { state.setIsMoreSheetPresented(on); }},
    SheetRow{"studio",
        [](AppViewModel &state, bool on) {
            on ? state.library().newAction() : state.library().cancelStudio();
        }},
    SheetRow{
        "inputModal", [](AppViewModel &state, bool on) { state.setIsInputModalPresented(on); }},
    SheetRow{
        "library", [](AppViewModel &state, bool on) { state.setIsActionLibraryPresented(on); }},
    SheetRow{
        "engineRoom", [](AppViewModel &state, bool on) { state.setIsEngineRoomPresented(on); }},
    SheetRow{"usage", [](AppViewModel &state, bool on) { state.setIsUsagePresented(on); }},
    SheetRow{"connect",
        [](AppViewModel &state, bool on) {
            state.setProviderConnectSheetProvider(
                on ? std::optional(AIProvider::OpenAI) : std::nullopt);
        }},
};

AppServices benchServices()
{
    AppServices services = makeServices(std::make_shared<const LocalStore>(
        std::make_shared<MemoryDefaultsDomain>(), &builtInActions));
    services.credentialStore = std::make_shared<DemoKeys>();
    return services;
}

// The whole window over a store in memory.
class BenchWorld
{
public:
    BenchWorld() : m_screens(m_app.viewModel())
    {
        m_screens.attachTo(m_engine);
        m_screens.appearance()->setReducesMotion(true);
        QQmlComponent component(&m_engine, QUrl(u"qrc:/qt/qml/Velarc/Main.qml"_s));
        m_window.reset(qobject_cast<QQuickWindow *>(component.create()));
        m_window->show();
        settle();
    }

    // What one turn of the loop brings, and one frame.
    void frame()
    {
        QCoreApplication::processEvents();
        m_window->grabWindow();
    }

    void settle()
    {
        constexpr int kTurns = 5; // what is laid out asks for more
        for (int turn = 0; turn < kTurns; ++turn) {
            frame();
        }
    }

    void show(const SheetRow &sheet)
    {
        sheet.show(state(), true);
        frame();
    }

    void hide(const SheetRow &sheet)
    {
        sheet.show(state(), false);
        settle();
    }

    [[nodiscard]] AppViewModel &state() { return m_app.viewModel(); }
    [[nodiscard]] LibraryPresenter &library() { return *m_screens.library(); }

    static QList<AIAction> largeLibrary()
    {
        constexpr qsizetype kSize = 10'000;
        QList<AIAction> actions;
        while (actions.size() < kSize) {
            actions += builtInActions();
        }
        actions.resize(kSize);
        qsizetype number = 0;
        for (AIAction &action : actions) {
            action.id = QUuid::createUuid();
            action.name += u' ' + QString::number(++number);
        }
        return actions;
    }

private:
    VelarcApp m_app{benchServices()};
    Screens m_screens;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

// Each round in a program of its own, whose engine has compiled nothing of the sheet.
void openFirstTime(benchmark::State &state, const SheetRow &sheet)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto world = std::make_unique<BenchWorld>();
        state.ResumeTiming();
        world->show(sheet);
        state.PauseTiming();
        world.reset();
        state.ResumeTiming();
    }
}

void openAgain(benchmark::State &state, const SheetRow &sheet)
{
    BenchWorld world;
    world.show(sheet);
    world.hide(sheet);
    for (auto _ : state) {
        world.show(sheet);
        state.PauseTiming();
        world.hide(sheet);
        state.ResumeTiming();
    }
}

// The frame of the window alone, which each of the figures above holds.
void emptyFrame(benchmark::State &state)
{
    BenchWorld world;
    for (auto _ : state) {
        world.frame();
    }
}

// From one text in the field to the next in a large library; `shown` is what else is counted.
template <typename Shown> void pressSearchKeys(benchmark::State &state, Shown shown)
{
    BenchWorld world;
    world.state().library().importActions(BenchWorld::largeLibrary());
    world.state().setIsActionLibraryPresented(true);
    world.frame();
    const QStringList typed{u"i"_s, u"in"_s, u"inv"_s, u"invo"_s, u"inv"_s, u"in"_s, u"i"_s, u""_s};
    qsizetype at = 0;
    for (auto _ : state) {
        world.library().setQuery(typed.at(at++ % typed.size()));
        shown(world);
    }
}

void searchKeyPress(benchmark::State &state)
{
    pressSearchKeys(state, [](BenchWorld &) {});
}

void searchKeyPressWithItsFrame(benchmark::State &state)
{
    pressSearchKeys(state, [](BenchWorld &world) { world.frame(); });
}

void openLargeLibrary(benchmark::State &state)
{
    BenchWorld world;
    world.state().library().importActions(BenchWorld::largeLibrary());
    const SheetRow &sheet = kSheets[3];
    for (auto _ : state) {
        world.show(sheet);
        state.PauseTiming();
        world.hide(sheet);
        state.ResumeTiming();
    }
}

// Publishing and saving included, with the library open.
void importTenThousand(benchmark::State &state)
{
    const QList<AIAction> actions = BenchWorld::largeLibrary();
    for (auto _ : state) {
        state.PauseTiming();
        auto world = std::make_unique<BenchWorld>();
        world->state().setIsActionLibraryPresented(true);
        world->settle();
        state.ResumeTiming();
        world->state().library().importActions(actions);
        state.PauseTiming();
        world.reset();
        state.ResumeTiming();
    }
}

} // namespace

} // namespace velarc

int main(int argc, char **argv)
{
    using namespace velarc;
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    benchmark::Initialize(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    constexpr auto kUnit = benchmark::kMillisecond;
    benchmark::RegisterBenchmark("emptyFrame", &emptyFrame)->Unit(kUnit);
    for (const SheetRow &sheet : kSheets) {
        const std::string name = sheet.name;
        benchmark::RegisterBenchmark(("openFirstTime/" + name).c_str(),
            [&sheet](benchmark::State &state) { openFirstTime(state, sheet); })
            ->Unit(kUnit);
        benchmark::RegisterBenchmark(("openAgain/" + name).c_str(),
            [&sheet](benchmark::State &state) { openAgain(state, sheet); })
            ->Unit(kUnit);
    }
    benchmark::RegisterBenchmark("searchKeyPress", &searchKeyPress)->Unit(kUnit);
    benchmark::RegisterBenchmark("searchKeyPressWithItsFrame", &searchKeyPressWithItsFrame)
        ->Unit(kUnit);
    benchmark::RegisterBenchmark("openLargeLibrary", &openLargeLibrary)->Unit(kUnit);
    benchmark::RegisterBenchmark("importTenThousand", &importTenThousand)->Unit(kUnit);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
