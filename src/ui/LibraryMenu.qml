import QtQuick
import Velarc

// What can be done to one action of the library.
Menu {
    id: menu

    readonly property LibraryPresenter presenter: Screens.library
    property string actionID
    property bool isPinned

    signal pinToggled(string actionID)

    function openFor(row: LibraryRowView, at: point) {
        actionID = row.actionID;
        isPinned = row.isPinned;
        parent = row;
        x = at.x;
        y = at.y;
        open();
        currentIndex = 0;
    }

    MenuItem {
        text: menu.isPinned ? "Unpin" : "Pin"
        symbol: menu.isPinned ? "pin.fill" : "pin"
        onTriggered: menu.pinToggled(menu.actionID)
    }

    MenuItem {
        text: "Edit"
        symbol: "pencil"
        onTriggered: menu.presenter.edit(menu.actionID)
    }

    MenuItem {
        text: "Duplicate"
        symbol: "doc.on.doc"
        onTriggered: menu.presenter.duplicate(menu.actionID)
    }

    MenuItem {
        text: "Delete"
        symbol: "trash"
        destructive: true
        onTriggered: menu.presenter.remove(menu.actionID)
    }
}
