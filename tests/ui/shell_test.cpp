// The window as a frame: its sheets, its settings window and its wordmark.

#include "ui_world.h"

#include "support/wait_until.h"

#include <QAccessible>
#include <QGuiApplication>

namespace velarc {

namespace {

// A field that drives a sheet, and what assistive programs call that sheet.
struct SheetCase
{
    const char *sheet;
    bool (*isPresented)(const AppState &state);
    void (*present)(AppState &state, bool isPresented);
};

void PrintTo(const SheetCase &sheet, std::ostream *out)
{
    *out << sheet.sheet;
}

const SheetCase kSheets[] = {
    {"More", [](const AppState &state) { return state.isMoreSheetPresented(); },
        [](AppState &state, bool isIt) { state.setIsMoreSheetPresented(isIt); }},
    {"Action Studio", [](const AppState &state) { return state.isStudioPresented(); },
        [](AppState &state, bool isIt) { state.setIsStudioPresented(isIt); }},
    {"Input Required", [](const AppState &state) { return state.isInputModalPresented(); },
        [](AppState &state, bool isIt) { state.setIsInputModalPresented(isIt); }},
    {"Manage Actions", [](const AppState &state) { return state.isActionLibraryPresented(); },
        [](AppState &state, bool isIt) { state.setIsActionLibraryPresented(isIt); }},
    {"Engine Room", [](const AppState &state) { return state.isEngineRoomPresented(); },
        [](AppState &state, bool isIt) { state.setIsEngineRoomPresented(isIt); }},
    {"Usage", [](const AppState &state) { return state.isUsagePresented(); },
        [](AppState &state, bool isIt) { state.setIsUsagePresented(isIt); }},
    {"Connect Gemini",
        [](const AppState &state) { return state.providerConnectSheetProvider().has_value(); },
        [](AppState &state, bool isIt) {
            state.setProviderConnectSheetProvider(
                isIt ? std::optional(AIProvider::Gemini) : std::nullopt);
        }},
};

class SheetTest
    : public UiWorld
    , public ::testing::WithParamInterface<SheetCase>
{
protected:
    SheetTest() { openWindow(); }

    void present(bool isPresented)
    {
        GetParam().present(*viewModel, isPresented);
        settle();
    }

    [[nodiscard]] QQuickItem *dialog(QQuickItem &within)
    {
        for (QQuickItem *item : within.childItems()) {
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
            if (item->isVisible() && face != nullptr && face->role() == QAccessible::Dialog
                && !face->text(QAccessible::Name).isEmpty()) {
                return item;
            }
            if (QQuickItem *found = item->isVisible() ? dialog(*item) : nullptr) {
                return found;
            }
        }
        return nullptr;
    }

    // What the sheet that stands is called; empty where none does.
    [[nodiscard]] QString standing()
    {
        QQuickItem *item = dialog(*window->contentItem());
        return item == nullptr
            ? QString()
            : QAccessible::queryAccessibleInterface(item)->text(QAccessible::Name);
    }

    [[nodiscard]] bool goes()
    {
        return waitUntil([this] { return standing().isEmpty(); });
    }
};

TEST_P(SheetTest, standsExactlyWhileItsFieldSaysSo)
{
    EXPECT_EQ(standing(), QString());
    present(true);
    EXPECT_EQ(standing(), QString::fromLatin1(GetParam().sheet));
    present(false);
    EXPECT_TRUE(goes());
}

TEST_P(SheetTest, escapeClosesItAndWritesItsFieldBack)
{
    present(true);
    press(Qt::Key_Escape);
    EXPECT_FALSE(GetParam().isPresented(*viewModel));
    EXPECT_TRUE(goes());
}

TEST_P(SheetTest, comesAgainAfterItWasClosed)
{
    present(true);
    press(Qt::Key_Escape);
    ASSERT_TRUE(goes());
    present(true);
    EXPECT_EQ(standing(), QString::fromLatin1(GetParam().sheet));
}

TEST_P(SheetTest, fitsIntoTheSmallestWindow)
{
    window->resize(window->minimumSize());
    present(true);
    QQuickItem *item = dialog(*window->contentItem());
    ASSERT_NE(item, nullptr);
    EXPECT_TRUE(
        QRectF(QPointF(), window->size()).contains(item->mapRectToScene(item->boundingRect())));
}

TEST_P(SheetTest, keysOfTheHomeScreenDoNothingUnderIt)
{
    viewModel->setQuickInput(u"hello"_s);
    present(true);
    viewModel->setActions({}); // or the sheet itself may run something
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    EXPECT_EQ(viewModel->quickInput(), u"hello"_s);
    EXPECT_TRUE(GetParam().isPresented(*viewModel));
}

INSTANTIATE_TEST_SUITE_P(AllSheets, SheetTest, ::testing::ValuesIn(kSheets));

class ShellTest : public UiWorld
{
protected:
    ShellTest() { openWindow(); }

    [[nodiscard]] QQuickWindow *settings()
    {
        for (QWindow *other : QGuiApplication::topLevelWindows()) {
            if (other != window.get() && other->isVisible() && other->title() == u"Settings"_s) {
                return qobject_cast<QQuickWindow *>(other);
            }
        }
        return nullptr;
    }
};

TEST_F(ShellTest, opensIn1200By820WithTheSidebarBesideTheHomeScreen)
{
    EXPECT_EQ(window->size(), QSize(1200, 820));
    EXPECT_EQ(window->title(), u"Velarc"_s);
    EXPECT_TRUE(shows(u"Actions"_s));
    EXPECT_TRUE(shows(u"Input"_s));
}

TEST_F(ShellTest, wordmarkIsOneElementInTheMiddleOfTheHomeScreen)
{
    QQuickItem *wordmark = itemCalled(u"Velarc"_s);
    ASSERT_NE(wordmark, nullptr);
    EXPECT_FALSE(shows(u"Vela"_s));
    EXPECT_FALSE(shows(u"rc"_s));
    const QRectF place = wordmark->mapRectToScene(wordmark->boundingRect());
    const QQuickItem *home = wordmark->parentItem();
    EXPECT_NEAR(place.center().x(), home->mapRectToScene(home->boundingRect()).center().x(), 1);
}

TEST_F(ShellTest, arrangementIsTheSameAtEveryWidth)
{
    for (const int width : {560, 900, 1200, 2400}) {
        window->resize(width, 820);
        settle();
        for (const QString &name : {u"Actions"_s, u"Velarc"_s, u"Input"_s, u"Run"_s}) {
            QQuickItem *item = itemCalled(name);
            ASSERT_NE(item, nullptr) << name.toStdString() << " at " << width;
            const QRectF place = item->mapRectToScene(item->boundingRect());
            EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(place))
                << name.toStdString() << " at " << width;
        }
    }
}

TEST_F(ShellTest, settingsAreAWindowOfTheirOwnOverTheSameState)
{
    press(Qt::Key_Comma, Qt::ControlModifier);
    QQuickWindow *opened = settings();
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->minimumSize(), QSize(760, 620));
    EXPECT_FALSE(viewModel->isEngineRoomPresented()) << "that is the sheet";
    opened->close();
    settle();
    EXPECT_EQ(settings(), nullptr);
    EXPECT_FALSE(screens->shell()->isSettingsPresented());
    window->requestActivate();
    settle();
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_NE(settings(), nullptr);
}

TEST_F(ShellTest, keysOfTheWindowWorkFromAnywhere)
{
    click(u"Automation"_s);
    press(Qt::Key_Escape);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(viewModel->isStudioPresented());
    press(Qt::Key_Escape);
    press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    press(Qt::Key_Escape);
    viewModel->setQuickInput(u"hello"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Processing);
    letRunGoOn();
}

TEST_F(ShellTest, appearanceIsFollowedWhileTheWindowStands)
{
    setLook(Look::Light);
    const QImage light = picture();
    setLook(Look::Dark);
    const QImage dark = picture();
    EXPECT_GT(light.pixelColor(10, 800).lightness(), 200);
    EXPECT_LT(dark.pixelColor(10, 800).lightness(), 60);
    setLook(Look::Light);
    EXPECT_EQ(picture().pixelColor(10, 800), light.pixelColor(10, 800));
}

} // namespace

} // namespace velarc
