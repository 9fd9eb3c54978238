#include "ui_world.h"

#include "base/uuid.h"
#include "support/wait_until.h"

#include <QMouseEvent>

namespace velarc {

namespace {

class LibrarySheetTest : public UiWorld
{
protected:
    void open()
    {
        openWindow();
        viewModel->setIsActionLibraryPresented(true);
        settle();
    }

    [[nodiscard]] QStringList names()
    {
        QStringList names;
        auto *rows = static_cast<RowsOf<LibraryRow> *>(screens->library()->rows());
        for (const LibraryRow &row : rows->rows()) {
            names.append(row.name);
        }
        return names;
    }

    [[nodiscard]] QString sectionOf(const QString &name)
    {
        auto *rows = static_cast<RowsOf<LibraryRow> *>(screens->library()->rows());
        for (const LibraryRow &row : rows->rows()) {
            if (row.name == name) {
                return row.section;
            }
        }
        return {};
    }

    // The row itself, not one of the same name beside the sheet.
    [[nodiscard]] QQuickItem *row(const QString &name)
    {
        return itemCalled(name, itemCalled(u"Manage Actions"_s)->parentItem()->parentItem());
    }

    void pressOn(const QQuickItem &item, Qt::MouseButton button)
    {
        const QPointF at = item.mapToScene({item.width() / 2, item.height() / 2});
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, window->mapToGlobal(at), button,
                type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(window.get(), &event);
        }
        settle();
    }

    [[nodiscard]] QString focusedName()
    {
        QAccessibleInterface *face =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return face == nullptr ? QString() : face->text(QAccessible::Name);
    }
};

TEST_F(LibrarySheetTest, opensOnTheSearchWithAllActions)
{
    open();
    EXPECT_EQ(focusedName(), u"Search actions"_s);
    EXPECT_EQ(names().size(), viewModel->library().visibleActions().size());
    EXPECT_TRUE(shows(u"Pinned"_s));
    EXPECT_TRUE(shows(u"Import"_s));
    EXPECT_TRUE(shows(u"Export"_s));
}

TEST_F(LibrarySheetTest, findsWhatTheUserSearches)
{
    open();
    type(u"eisenhower"_s);
    EXPECT_EQ(names(), QStringList{u"Priority Matrix"_s});
    press(Qt::Key_A, Qt::ControlModifier);
    type(u"billing"_s);
    EXPECT_TRUE(names().contains(u"Invoice Follow-Up Message"_s));
    press(Qt::Key_A, Qt::ControlModifier);
    type(u"  INVOICE "_s);
    EXPECT_EQ(names(), (QStringList{u"Extract Invoice Info"_s, u"Invoice Follow-Up Message"_s}));
}

TEST_F(LibrarySheetTest, tellsWhenNothingMatches)
{
    open();
    type(u"zebra"_s);
    EXPECT_TRUE(shows(u"No Matching Actions"_s));
    EXPECT_TRUE(shows(u"Try a different search term."_s));
}

TEST_F(LibrarySheetTest, tellsWhenAllActionsWereDeletedWhileTheProgramRan)
{
    open();
    EXPECT_FALSE(shows(u"No Actions Yet"_s));
    while (!viewModel->actions().isEmpty()) {
        viewModel->library().deleteAction(AIAction(viewModel->actions().constFirst()));
    }
    settle();
    EXPECT_TRUE(shows(u"No Actions Yet"_s));
    EXPECT_TRUE(shows(u"Create your first action to get started."_s));
    launch();
    EXPECT_FALSE(viewModel->actions().isEmpty());
}

TEST_F(LibrarySheetTest, theSearchIsEmptyAtEachOpening)
{
    open();
    type(u"zebra"_s);
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Manage Actions"_s); }));
    viewModel->setIsActionLibraryPresented(true);
    settle();
    EXPECT_EQ(screens->library()->query(), QString());
    EXPECT_EQ(itemCalled(u"Search actions"_s)->property("text").toString(), QString());
    EXPECT_GT(names().size(), 1);
}

TEST_F(LibrarySheetTest, aPressOnARowSelectsItAndClosesTheSheet)
{
    open();
    pressOn(*row(u"Git Ideas"_s), Qt::LeftButton);
    EXPECT_EQ(viewModel->selectedActionID(), actionNamed(u"Git Ideas"_s).id);
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    EXPECT_EQ(viewModel->recentActionIDs().constFirst(), actionNamed(u"Git Ideas"_s).id);
}

TEST_F(LibrarySheetTest, aSecondaryClickOffersFourEntriesInTheirOrder)
{
    open();
    pressOn(*row(u"Git Ideas"_s), Qt::RightButton);
    QQuickItem *last = nullptr;
    for (const char *entry : {"Pin", "Edit", "Duplicate", "Delete"}) {
        QQuickItem *item = itemCalled(QString::fromLatin1(entry));
        ASSERT_NE(item, nullptr) << entry;
        if (last != nullptr) {
            EXPECT_GT(item->mapToScene({}).y(), last->mapToScene({}).y()) << entry;
        }
        last = item;
    }
    EXPECT_TRUE(last->property("destructive").toBool());
}

TEST_F(LibrarySheetTest, aToggledPinMovesTheRowBetweenSectionsWhileTheSheetStaysOpen)
{
    open();
    pressOn(*row(u"Git Ideas"_s), Qt::RightButton);
    click(u"Pin"_s);
    EXPECT_EQ(sectionOf(u"Git Ideas"_s), u"Pinned"_s);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    pressOn(*row(u"Git Ideas"_s), Qt::RightButton);
    EXPECT_TRUE(shows(u"Unpin"_s));
    click(u"Unpin"_s);
    EXPECT_EQ(sectionOf(u"Git Ideas"_s), u"All Actions"_s);
}

TEST_F(LibrarySheetTest, editClosesTheLibraryAndMoreAndOpensTheEditor)
{
    open();
    viewModel->setIsMoreSheetPresented(true);
    settle();
    screens->library()->edit(uuidText(actionNamed(u"Git Ideas"_s).id));
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    EXPECT_FALSE(viewModel->isMoreSheetPresented());
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->studioDraft().name, u"Git Ideas"_s);
}

TEST_F(LibrarySheetTest, duplicateAddsACopyAndStays)
{
    open();
    pressOn(*row(u"Git Ideas"_s), Qt::RightButton);
    click(u"Duplicate"_s);
    EXPECT_TRUE(names().contains(u"Git Ideas Copy"_s));
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
}

TEST_F(LibrarySheetTest, deletingTheSelectedActionMovesTheCheckMarkAtOnce)
{
    open();
    const QString selected = viewModel->library().selectedAction()->name;
    pressOn(*row(selected), Qt::RightButton);
    click(u"Delete"_s);
    EXPECT_FALSE(names().contains(selected));
    auto *rows = static_cast<RowsOf<LibraryRow> *>(screens->library()->rows());
    EXPECT_TRUE(rows->rows().constFirst().isChosen);
}

TEST_F(LibrarySheetTest, aDeletionCanBeTakenBackForSixSeconds)
{
    open();
    const auto before = viewModel->actions();
    pressOn(*row(u"Git Ideas"_s), Qt::RightButton);
    click(u"Delete"_s);
    EXPECT_TRUE(shows(u"Deleted Git Ideas"_s));
    click(u"Undo"_s);
    EXPECT_EQ(viewModel->actions(), before);
    EXPECT_FALSE(shows(u"Deleted Git Ideas"_s));
    screens->library()->remove(uuidText(actionNamed(u"Git Ideas"_s).id));
    settle();
    clock->advance(5999ms);
    settle();
    EXPECT_TRUE(shows(u"Deleted Git Ideas"_s));
    clock->advance(1ms);
    settle();
    EXPECT_FALSE(shows(u"Deleted Git Ideas"_s));
}

TEST_F(LibrarySheetTest, controlZTakesTheDeletionBackFromTheSearchTooWhileItsNoticeStands)
{
    open();
    type(u"git"_s);
    screens->library()->remove(uuidText(actionNamed(u"Git Ideas"_s).id));
    settle();
    EXPECT_FALSE(hasActionNamed(u"Git Ideas"_s));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(hasActionNamed(u"Git Ideas"_s));
    EXPECT_EQ(screens->library()->query(), u"git"_s);
    press(Qt::Key_Z, Qt::ControlModifier); // of the text again
    EXPECT_NE(screens->library()->query(), u"git"_s);
}

TEST_F(LibrarySheetTest, theKeyboardReachesTheRowsAndTheirMenu)
{
    open();
    type(u"invoice"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), u"Extract Invoice Info"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(focusedName(), u"Invoice Follow-Up Message"_s);
    press(Qt::Key_Menu);
    EXPECT_TRUE(shows(u"Duplicate"_s));
    press(Qt::Key_Escape);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Duplicate"_s); }));
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(shows(u"Duplicate"_s));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_TRUE(hasActionNamed(u"Invoice Follow-Up Message Copy"_s));
}

TEST_F(LibrarySheetTest, pinningByTheKeyboardKeepsTheFocusOnTheAction)
{
    open();
    type(u"git"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    press(Qt::Key_Return);
    EXPECT_TRUE(actionNamed(u"Git Ideas"_s).isPinned);
    EXPECT_TRUE(waitUntil([this] { return focusedName() == u"Git Ideas"_s; }));
}

TEST_F(LibrarySheetTest, upFromTheFirstRowLeadsBackToTheSearch)
{
    open();
    press(Qt::Key_Down);
    EXPECT_NE(focusedName(), u"Search actions"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(focusedName(), u"Search actions"_s);
}

TEST_F(LibrarySheetTest, returnInTheSearchTakesTheFirstThatIsFound)
{
    open();
    press(Qt::Key_Return);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    type(u"git"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
    EXPECT_EQ(viewModel->selectedActionID(), actionNamed(u"Git Ideas"_s).id);
}

TEST_F(LibrarySheetTest, aLongPressOpensTheMenuAndSelectsNothing)
{
    open();
    const auto selected = viewModel->selectedActionID();
    const QQuickItem &item = *row(u"Git Ideas"_s);
    const QPointF at = item.mapToScene({item.width() / 2, item.height() / 2});
    QMouseEvent down(QEvent::MouseButtonPress, at, window->mapToGlobal(at), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &down);
    EXPECT_TRUE(waitUntil([this] { return shows(u"Duplicate"_s); }));
    QMouseEvent up(QEvent::MouseButtonRelease, at, window->mapToGlobal(at), Qt::LeftButton,
        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &up);
    settle();
    EXPECT_EQ(viewModel->selectedActionID(), selected);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
}

TEST_F(LibrarySheetTest, aRowTellsItsStateToAssistivePrograms)
{
    open();
    const QString selected = viewModel->library().selectedAction()->name;
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(row(selected));
    EXPECT_EQ(face->role(), QAccessible::ListItem);
    EXPECT_TRUE(face->text(QAccessible::Description).contains(u"pinned, selected"_s));
    EXPECT_TRUE(face->state().selected);
}

} // namespace

} // namespace velarc
