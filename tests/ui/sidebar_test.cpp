#include "ui_world.h"

#include "ui/sidebar_presenter.h"

#include <QAccessible>

namespace velarc {

namespace {

AIAction named(const QString &name, int sortOrder, bool isPinned = false)
{
    AIAction action;
    action.id = QUuid::createUuid();
    action.name = name;
    action.sortOrder = sortOrder;
    action.isPinned = isPinned;
    return action;
}

AIAction hiddenFromTheUser(const QString &name)
{
    AIAction action = named(name, 0, true);
    action.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    return action;
}

// SECTION/NAME a row.
QStringList namesOf(const QList<SidebarRow> &rows)
{
    QStringList names;
    for (const SidebarRow &row : rows) {
        names.append(row.section + u'/' + row.name);
    }
    return names;
}

class SidebarTest : public UiWorld
{
protected:
    QList<AIAction> actions{named(u"Amber"_s, 1), named(u"Beech"_s, 2), named(u"Cedar"_s, 3)};

    void openWith(const QList<AIAction> &shown)
    {
        launch();
        viewModel->setActions(shown);
        viewModel->library().selectAction(shown.first().id);
        openWindow();
    }

    [[nodiscard]] QString selectedName() const
    {
        const auto action = viewModel->library().selectedAction();
        return action ? action->name : QString();
    }

    // The row of that name that stands lowest.
    [[nodiscard]] QQuickItem *row(const QString &name)
    {
        QQuickItem *found = nullptr;
        for (QQuickItem *item : rows()) {
            if (nameOf(*item) == name && (found == nullptr || item->y() > found->y())) {
                found = item;
            }
        }
        return found;
    }

    [[nodiscard]] QList<QQuickItem *> rows()
    {
        return itemsOf(*window->contentItem(), "QQuickItemDelegate");
    }

    // The visible items of a kind.
    [[nodiscard]] static QList<QQuickItem *> itemsOf(QQuickItem &within, const char *kind)
    {
        QList<QQuickItem *> found;
        for (QQuickItem *item : within.childItems()) {
            if (item->isVisible() && item->inherits(kind)) {
                found.append(item);
            }
            found.append(itemsOf(*item, kind));
        }
        return found;
    }

    [[nodiscard]] static QString nameOf(QQuickItem &item)
    {
        return QAccessible::queryAccessibleInterface(&item)->text(QAccessible::Name);
    }

    [[nodiscard]] QStringList namesThatAreShownAsSelected()
    {
        QStringList names;
        for (QQuickItem *item : rows()) {
            if (QAccessible::queryAccessibleInterface(item)->state().selected) {
                names.append(nameOf(*item));
            }
        }
        return names;
    }

    void enterByKeyboard()
    {
        row(selectedName())->forceActiveFocus(Qt::TabFocusReason);
        settle();
    }
};

TEST(SidebarRows, withoutAPinnedActionThereIsOneSection)
{
    EXPECT_EQ(namesOf(sidebarRows({named(u"Beech"_s, 2), named(u"Amber"_s, 1)})),
        (QStringList{u"All Actions/Amber"_s, u"All Actions/Beech"_s}));
}

TEST(SidebarRows, pinnedActionsStandInBothSections)
{
    EXPECT_EQ(namesOf(sidebarRows({named(u"Amber"_s, 1), named(u"Beech"_s, 2, true)})),
        (QStringList{u"Quick Actions/Beech"_s, u"All Actions/Beech"_s, u"All Actions/Amber"_s}));
}

TEST(SidebarRows, aHiddenSystemActionStandsInNeitherSection)
{
    EXPECT_EQ(namesOf(sidebarRows({hiddenFromTheUser(u"Delete"_s), named(u"Amber"_s, 1)})),
        QStringList(u"All Actions/Amber"_s));
}

TEST(SidebarRows, thereIsNoSectionWithoutAnAction)
{
    EXPECT_TRUE(sidebarRows({}).isEmpty());
}

TEST_F(SidebarTest, showsItsTitleItsSectionsAndItsCommands)
{
    openWith(actions);
    for (const QString &name : {u"Actions"_s, u"All Actions"_s, u"New"_s, u"More"_s}) {
        EXPECT_TRUE(shows(name)) << name.toStdString();
    }
    EXPECT_FALSE(shows(u"Quick Actions"_s));
}

TEST_F(SidebarTest, aPinBringsTheQuickActionsAndTakingItOffRemovesThem)
{
    openWith(actions);
    viewModel->library().togglePin(actions.first().id);
    settle();
    EXPECT_TRUE(shows(u"Quick Actions"_s));
    viewModel->library().togglePin(actions.first().id);
    settle();
    EXPECT_FALSE(shows(u"Quick Actions"_s));
}

TEST_F(SidebarTest, aPressSelectsAndMakesTheActionRecent)
{
    openWith(actions);
    click(u"Beech"_s);
    EXPECT_EQ(selectedName(), u"Beech"_s);
    EXPECT_EQ(viewModel->recentActionIDs().first(), actions.at(1).id);
    EXPECT_EQ(namesThatAreShownAsSelected(), QStringList(u"Beech"_s));
}

TEST_F(SidebarTest, whatNamesNoActionOfTheLibraryChangesNothing)
{
    openWith(actions);
    for (const QString &id : {QString(), u"nonsense"_s, QUuid::createUuid().toString()}) {
        screens->sidebar()->select(id);
    }
    EXPECT_EQ(viewModel->selectedActionID(), actions.first().id);
    EXPECT_EQ(viewModel->recentActionIDs(), QList<QUuid>{actions.first().id});
}

TEST_F(SidebarTest, aSelectionMadeElsewhereIsShown)
{
    openWith(actions);
    viewModel->library().selectAction(actions.at(2).id);
    settle();
    EXPECT_EQ(namesThatAreShownAsSelected(), QStringList(u"Cedar"_s));
}

TEST_F(SidebarTest, newOpensAnEditorOnABlankAction)
{
    openWith(actions);
    click(u"New"_s);
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->studioDraft().name, u"New Action"_s);
}

TEST_F(SidebarTest, moreOpensItsSheetAndMarksNoHint)
{
    openWith(actions);
    screens->sidebar()->openMore();
    settle();
    EXPECT_TRUE(viewModel->isMoreSheetPresented());
    EXPECT_FALSE(viewModel->homeHintState().hasSeenMoreMenuHint);
}

TEST_F(SidebarTest, arrowKeysMoveTheSelectionAndStopAtTheEnds)
{
    openWith(actions);
    enterByKeyboard();
    press(Qt::Key_Up);
    EXPECT_EQ(selectedName(), u"Amber"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedName(), u"Beech"_s);
    EXPECT_EQ(focusedName(), u"Beech"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedName(), u"Cedar"_s);
    press(Qt::Key_Home);
    EXPECT_EQ(selectedName(), u"Amber"_s);
    press(Qt::Key_End);
    EXPECT_EQ(selectedName(), u"Cedar"_s);
}

TEST_F(SidebarTest, theKeyboardsPlaceIsSeenWhereverItWasMovedTo)
{
    openWith(actions);
    enterByKeyboard();
    press(Qt::Key_Down);
    EXPECT_TRUE(row(u"Beech"_s)->property("visualFocus").toBool());
}

TEST_F(SidebarTest, arrowKeysGoOnFromWhatWasSelectedElsewhere)
{
    openWith(actions);
    viewModel->library().selectAction(actions.at(1).id);
    settle();
    enterByKeyboard();
    press(Qt::Key_Down);
    EXPECT_EQ(selectedName(), u"Cedar"_s);
}

TEST_F(SidebarTest, arrowKeysPassFromOneSectionToTheNext)
{
    actions[1].isPinned = true;
    openWith({actions.at(1), actions.at(0), actions.at(2)});
    enterByKeyboard(); // Beech under All Actions
    press(Qt::Key_Up);
    EXPECT_EQ(selectedName(), u"Beech"_s) << "under Quick Actions";
    press(Qt::Key_Up);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(selectedName(), u"Amber"_s);
}

TEST_F(SidebarTest, longListScrollsToWhereTheKeyboardGoes)
{
    QList<AIAction> many;
    for (int number = 0; number < 500; ++number) {
        many.append(named(u"Action %1"_s.arg(number), number));
    }
    openWith(many);
    enterByKeyboard();
    press(Qt::Key_End);
    EXPECT_EQ(selectedName(), u"Action 499"_s);
    const QRectF place = row(u"Action 499"_s)->mapRectToScene({0, 0, 10, 10});
    EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(place));
    press(Qt::Key_PageUp);
    EXPECT_NE(selectedName(), u"Action 499"_s);
    EXPECT_EQ(focusedName(), selectedName());
}

TEST_F(SidebarTest, tabPassesTheWholeListInOneStep)
{
    openWith(actions);
    enterByKeyboard();
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), u"Actions"_s) << "the first command beside the list";
}

TEST_F(SidebarTest, scrollBarStandsBesideTheRows)
{
    QList<AIAction> many;
    for (int number = 0; number < 60; ++number) {
        many.append(named(u"Action %1"_s.arg(number), number));
    }
    openWith(many);
    const QQuickItem *shown = row(u"Action 3"_s);
    const QList<QQuickItem *> bars = itemsOf(*shown->parentItem()->parentItem(), "QQuickScrollBar");
    ASSERT_EQ(bars.size(), 1);
    const qreal barsEdge = bars.first()->mapRectToScene(bars.first()->boundingRect()).left();
    EXPECT_LE(shown->mapRectToScene(shown->boundingRect()).right(), barsEdge);
}

TEST_F(SidebarTest, actionsAreKnownToAssistiveProgramsByNameAndSelection)
{
    openWith(actions);
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(row(u"Cedar"_s));
    EXPECT_FALSE(face->state().selected);
    face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    settle();
    EXPECT_EQ(selectedName(), u"Cedar"_s);
    EXPECT_TRUE(face->state().selected);
}

} // namespace

} // namespace velarc
