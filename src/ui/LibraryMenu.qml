import QtQuick
import Velarc

// What can be done to one action of the library.
Loader {
    id: loader

    readonly property LibraryPresenter presenter: Screens.library
    property string actionID
    property bool isPinned

    signal pinToggled(string actionID)

    active: false

    function openFor(row: LibraryRowView, at: point) {
        actionID = row.actionID;
        isPinned = row.isPinned;
        active = true;
        const menu = item as Menu;
        menu.parent = row;
        menu.x = at.x;
        menu.y = at.y;
        menu.open();
        menu.currentIndex = 0;
    }

    sourceComponent: Menu {
        MenuItem {
            text: loader.isPinned ? "Unpin" : "Pin"
            symbol: loader.isPinned ? "pin.fill" : "pin"
            onTriggered: loader.pinToggled(loader.actionID)
        }

        MenuItem {
            text: "Edit"
            symbol: "pencil"
            onTriggered: loader.presenter.edit(loader.actionID)
        }

        MenuItem {
            text: "Duplicate"
            symbol: "doc.on.doc"
            onTriggered: loader.presenter.duplicate(loader.actionID)
        }

        MenuItem {
            text: "Delete"
            symbol: "trash"
            destructive: true
            onTriggered: loader.presenter.remove(loader.actionID)
        }
    }
}
