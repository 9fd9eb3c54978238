#include "entry/main_window.h"
#include "support/app_world.h"
#include "support/wait_until.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>

namespace velarc {

namespace {

class MainWindowTest : public AppWorld
{
protected:
    QTemporaryDir folder;
    QString statePath = folder.filePath(u"window.json"_s);
    std::unique_ptr<MainWindow> main;

    MainWindowTest() { launch(); }

    ~MainWindowTest() override
    {
        main.reset();
        scope->finish();
    }

    QQuickWindow &open()
    {
        main.reset();
        main = std::make_unique<MainWindow>(*viewModel, statePath);
        QCoreApplication::processEvents();
        return main->window();
    }

    static QSize screenSize() { return QGuiApplication::primaryScreen()->availableSize(); }
};

TEST_F(MainWindowTest, opensInTheSizeOfAFirstStart)
{
    EXPECT_EQ(open().size(), QSize(1200, 820).boundedTo(screenSize()));
}

TEST_F(MainWindowTest, opensInTheSizeInWhichItWasClosed)
{
    open().resize(777, 555);
    main->window().close();
    EXPECT_EQ(open().size(), QSize(777, 555));
}

TEST_F(MainWindowTest, aMaximisedWindowLeavesTheSizeThatWasRemembered)
{
    saveWindowState({QSize(700, 500), {}}, statePath);
    open().showMaximized();
    QCoreApplication::processEvents();
    main->window().close();
    EXPECT_EQ(loadWindowState(statePath).size, QSize(700, 500));
}

TEST_F(MainWindowTest, aSizeFromALargerScreenIsFittedToThisOne)
{
    saveWindowState({QSize(20'000, 500), {}}, statePath);
    EXPECT_EQ(open().width(), screenSize().width());
    EXPECT_EQ(main->window().height(), 500);
}

TEST_F(MainWindowTest, itsSizeNeverReachesTheProgramsData)
{
    const auto writes = domain->bytes("velarc.homeLayout.v1");
    open().resize(777, 555);
    main->window().close();
    EXPECT_EQ(domain->bytes("velarc.homeLayout.v1"), writes);
    EXPECT_TRUE(QFile::exists(statePath));
}

TEST_F(MainWindowTest, closingIsTold)
{
    open();
    int closed = 0;
    QObject::connect(main.get(), &MainWindow::closed, main.get(), [&closed] { ++closed; });
    main->window().close();
    EXPECT_EQ(closed, 1);
}

TEST_F(MainWindowTest, howTheDesktopLookedIsRememberedForTheNextStart)
{
    open();
    main->window().close();
    EXPECT_EQ(loadWindowState(statePath).isDark, false);
    saveWindowState({{}, true}, statePath);
    main = std::make_unique<MainWindow>(*viewModel, statePath);
    EXPECT_LT(main->window().color().lightness(), 60) << "dark from the first frame";
}

TEST_F(MainWindowTest, aMinimisedWindowIsBroughtBack)
{
    open().showMinimized();
    ASSERT_TRUE((main->window().windowStates() & Qt::WindowMinimized) != 0);
    main->raise();
    EXPECT_FALSE((main->window().windowStates() & Qt::WindowMinimized) != 0);
    EXPECT_TRUE(main->window().isVisible());
}

TEST_F(MainWindowTest, aMaximisedWindowThatWasMinimisedIsMaximisedAgain)
{
    open().setWindowStates(Qt::WindowMaximized | Qt::WindowMinimized);
    main->raise();
    EXPECT_EQ(main->window().windowStates(), Qt::WindowStates(Qt::WindowMaximized));
}

} // namespace

} // namespace velarc
