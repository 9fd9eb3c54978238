// Every sheet by the keyboard alone, and as assistive programs meet it.

#include "accessible_tree.h"
#include "ui_world.h"

#include "actions/action_json.h"
#include "support/wait_until.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <functional>
#include <ostream>

namespace velarc {

namespace {

struct SheetRow
{
    const char *name;
    QString title;
    std::function<void(AppViewModel &)> open;
};

void PrintTo(const SheetRow &row, std::ostream *out)
{
    *out << row.name;
}

const std::vector<SheetRow> &sheets()
{
    const auto engineRoom = [](EngineRoomSection section) {
        return [section](AppViewModel &model) {
            model.setEngineRoomSection(section);
            model.setIsEngineRoomPresented(true);
        };
    };
    static const std::vector<SheetRow> rows{
        {"library", u"Manage Actions"_s,
            [](AppViewModel &model) { model.library().openActionLibrary(); }},
        {"more", u"More"_s, [](AppViewModel &model) { model.setIsMoreSheetPresented(true); }},
        {"usage", u"Usage"_s, [](AppViewModel &model) { model.setIsUsagePresented(true); }},
        {"newAction", u"Action Studio"_s, [](AppViewModel &model) { model.library().newAction(); }},
        {"connections", u"Engine Room"_s, engineRoom(EngineRoomSection::Connections)},
        {"defaultEngine", u"Engine Room"_s, engineRoom(EngineRoomSection::DefaultEngine)},
        {"advanced", u"Engine Room"_s, engineRoom(EngineRoomSection::Advanced)},
        {"connect", u"Connect OpenAI"_s,
            [](AppViewModel &model) {
                model.connections().presentConnectSheet(AIProvider::OpenAI);
            }},
    };
    return rows;
}

// The window, once its editor has the focus: it takes it a moment after it has come.
class FocusedWindow : public UiWorld
{
protected:
    void openFocusedWindow()
    {
        openWindow();
        ASSERT_TRUE(waitUntil([this] {
            settle();
            return focusedName().startsWith(u"Type, paste"_s);
        }));
    }
};

class SheetKeyboardTest
    : public FocusedWindow
    , public ::testing::WithParamInterface<SheetRow>
{
protected:
    void open()
    {
        openWindow();
        GetParam().open(*viewModel);
        settle();
    }

    // Of what assistive programs see.
    [[nodiscard]] QAccessibleInterface *sheet()
    {
        return accessibleElement(*window, QAccessible::Dialog, GetParam().title);
    }

    [[nodiscard]] static QString described(QAccessibleInterface &element)
    {
        return element.text(QAccessible::Name) + u" ("_s
            + QString::number(static_cast<int>(element.role()), 16) + u')';
    }

    [[nodiscard]] static bool isControl(QAccessibleInterface &element)
    {
        constexpr std::array kControls{QAccessible::Button, QAccessible::CheckBox,
            QAccessible::RadioButton, QAccessible::ComboBox, QAccessible::EditableText,
            QAccessible::ListItem, QAccessible::Link};
        return std::ranges::find(kControls, element.role()) != kControls.end()
            && !element.state().disabled && !element.state().invisible;
    }

    [[nodiscard]] QList<QAccessibleInterface *> controls()
    {
        QList<QAccessibleInterface *> found;
        forEachElement(sheet(), [&](QAccessibleInterface &element) {
            if (isControl(element)) {
                found.append(&element);
            }
        });
        return found;
    }

    // Of a list and of a group of choices the arrow keys reach the others.
    [[nodiscard]] static bool isOneOfMany(QAccessibleInterface &element)
    {
        return element.role() == QAccessible::ListItem
            || element.role() == QAccessible::RadioButton;
    }
};

TEST_P(SheetKeyboardTest, everyControlHasANameAndCanBeUsedByAssistivePrograms)
{
    open();
    ASSERT_NE(sheet(), nullptr);
    ASSERT_FALSE(controls().isEmpty());
    for (QAccessibleInterface *control : controls()) {
        SCOPED_TRACE(described(*control).toStdString());
        EXPECT_FALSE(control->text(QAccessible::Name).isEmpty());
        if (control->role() != QAccessible::EditableText) {
            ASSERT_NE(control->actionInterface(), nullptr);
            EXPECT_TRUE(control->actionInterface()->actionNames().contains(
                QAccessibleActionInterface::pressAction()));
        }
    }
}

TEST_P(SheetKeyboardTest, everythingThatIsFocusedHasANameAndARole)
{
    open();
    constexpr int kSteps = 40;
    for (int step = 0; step < kSteps; ++step) {
        QQuickItem *item = window->activeFocusItem();
        ASSERT_NE(item, nullptr) << step;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
        ASSERT_NE(face, nullptr) << step << item->metaObject()->className();
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
            << step << item->metaObject()->className();
        EXPECT_NE(face->role(), QAccessible::Client) << described(*face).toStdString();
        EXPECT_NE(face->role(), QAccessible::NoRole) << described(*face).toStdString();
        press(Qt::Key_Tab);
    }
}

TEST_P(SheetKeyboardTest, tabComesToEveryControlAndStaysInTheSheet)
{
    open();
    QSet<QObject *> reached;
    constexpr int kMost = 60;
    for (int step = 0; step < kMost; ++step) {
        reached.insert(window->activeFocusItem());
        press(Qt::Key_Tab);
    }
    for (QAccessibleInterface *control : controls()) {
        if (!isOneOfMany(*control)) {
            EXPECT_TRUE(reached.contains(control->object())) << described(*control).toStdString();
        }
    }
    QQuickItem *dialog = qobject_cast<QQuickItem *>(sheet()->object());
    for (QObject *object : reached) {
        EXPECT_TRUE(dialog->isAncestorOf(qobject_cast<QQuickItem *>(object)))
            << object->metaObject()->className();
    }
}

TEST_P(SheetKeyboardTest, backtabWalksTheSameWayBack)
{
    open();
    QList<QObject *> there;
    constexpr int kSteps = 5;
    for (int step = 0; step < kSteps; ++step) {
        there.append(window->activeFocusItem());
        press(Qt::Key_Tab);
    }
    for (int step = kSteps - 1; step >= 0; --step) {
        press(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(window->activeFocusItem(), there.at(step)) << step;
    }
}

TEST_P(SheetKeyboardTest, escapeClosesItAndTheFocusGoesBackToWhereItWas)
{
    openFocusedWindow();
    QQuickItem *before = window->activeFocusItem();
    ASSERT_NE(before, nullptr);
    ASSERT_NE(before, window->contentItem());
    GetParam().open(*viewModel);
    settle();
    ASSERT_NE(sheet(), nullptr);
    ASSERT_NE(window->activeFocusItem(), before);
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return sheet() == nullptr; }));
    settle();
    EXPECT_EQ(window->activeFocusItem(), before) << focusedName().toStdString();
}

TEST_P(SheetKeyboardTest, theFocusGoesBackThoughTheSheetFadesAway)
{
    openFocusedWindow();
    screens->appearance()->setReducesMotion(false);
    QQuickItem *before = window->activeFocusItem();
    GetParam().open(*viewModel);
    const auto hasFocus = [this, before] {
        settle();
        return sheet() != nullptr && window->activeFocusItem() != before;
    };
    ASSERT_TRUE(waitUntil(hasFocus));
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] {
        settle();
        return window->activeFocusItem() == before;
    })) << focusedName().toStdString();
}

TEST_P(SheetKeyboardTest, aSheetThatStillFadesInIsClosedByEscape)
{
    openWindow();
    screens->appearance()->setReducesMotion(false);
    GetParam().open(*viewModel);
    settle();
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] {
        settle();
        return sheet() == nullptr;
    }));
}

INSTANTIATE_TEST_SUITE_P(OfEverySheet, SheetKeyboardTest, ::testing::ValuesIn(sheets()),
    [](const auto &row) { return std::string(row.param.name); });

class FadingSheetTest : public FocusedWindow
{
protected:
    void SetUp() override
    {
        openFocusedWindow();
        screens->appearance()->setReducesMotion(false);
    }

    [[nodiscard]] bool waitUntilGone(const QString &title)
    {
        return waitUntil([&] {
            settle();
            return !shows(title);
        });
    }
};

TEST_F(FadingSheetTest, aNewActionIsTypedAndSavedAsFastAsOneCan)
{
    viewModel->library().newAction();
    settle();
    type(u"Harbour Haiku"_s);
    press(Qt::Key_Return);
    EXPECT_TRUE(hasActionNamed(u"Harbour Haiku"_s));
    EXPECT_TRUE(waitUntilGone(u"Action Studio"_s));
}

TEST_F(FadingSheetTest, whatIsTakenBackWhileTheSheetFadesInTakesItAway)
{
    viewModel->setIsUsagePresented(true);
    settle();
    viewModel->setIsUsagePresented(false);
    EXPECT_TRUE(waitUntilGone(u"Usage"_s));
}

TEST_F(FadingSheetTest, aSheetThatIsWantedAgainWhileItFadesAwayStands)
{
    viewModel->setIsUsagePresented(true);
    settle();
    viewModel->setIsUsagePresented(false);
    settle();
    viewModel->setIsUsagePresented(true);
    const auto isOpaque = [this] {
        const auto *sheet = accessibleElement(*window, QAccessible::Dialog, u"Usage"_s);
        const auto *item = sheet ? qobject_cast<QQuickItem *>(sheet->object()) : nullptr;
        return item != nullptr && item->parentItem()->opacity() == 1;
    };
    EXPECT_TRUE(waitUntil([&] {
        settle();
        return isOpaque();
    }));
    EXPECT_TRUE(viewModel->isUsagePresented());
}

// The library gave way to the editor, and what had the focus in it went with it.
TEST_F(FadingSheetTest, theKeyboardComesBackToTheScreenBelowAfterOneSheetLedToAnother)
{
    QQuickItem *before = window->activeFocusItem();
    viewModel->library().openActionLibrary();
    settle();
    press(Qt::Key_Down);
    viewModel->library().editAction(AIAction(viewModel->actions().constFirst()));
    viewModel->setIsActionLibraryPresented(false);
    ASSERT_TRUE(waitUntilGone(u"Manage Actions"_s));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntilGone(u"Action Studio"_s));
    settle();
    EXPECT_EQ(window->activeFocusItem(), before) << focusedName().toStdString();
}

TEST_F(FadingSheetTest, theKeyboardComesBackToTheSheetBelow)
{
    viewModel->setIsEngineRoomPresented(true);
    settle();
    QQuickItem *before = window->activeFocusItem();
    viewModel->connections().presentConnectSheet(AIProvider::OpenAI);
    settle();
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntilGone(u"Connect OpenAI"_s));
    settle();
    EXPECT_EQ(window->activeFocusItem(), before) << focusedName().toStdString();
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isEngineRoomPresented());
}

} // namespace

} // namespace velarc
