import QtQuick
import QtQuick.Templates as T
import Velarc

// The actions that the search finds, in their sections, or what stands instead of them.
FocusScope {
    id: area

    readonly property LibraryPresenter presenter: Screens.library

    signal leftUpwards

    function enter() {
        if (list.count > 0) {
            list.currentIndex = Math.max(0, list.currentIndex);
            list.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    function chooseFirst() {
        if (list.count > 0 && presenter.query.trim() !== "") {
            (list.itemAtIndex(0) as LibraryRowView)?.choose();
        }
    }

    // A pin moves its row into another section: the focus goes with it.
    function togglePin(actionID: string) {
        presenter.togglePin(actionID);
        list.currentIndex = presenter.rowOf(actionID);
    }

    ListView {
        id: list

        anchors.fill: parent
        anchors.leftMargin: Theme.space3
        anchors.rightMargin: Theme.space3
        visible: count > 0
        focus: true
        clip: true
        bottomMargin: Theme.space3
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: 0
        highlightMoveDuration: 0
        model: area.presenter.rows
        section.property: "section"
        section.delegate: SectionHeader {
            required property string section

            width: ListView.view?.width ?? 0
            topPadding: Theme.space3
            bottomPadding: Theme.space1
            leftPadding: Theme.space2
            text: section
        }
        Accessible.role: Accessible.List
        Accessible.name: "Actions"
        T.ScrollBar.vertical: ScrollBar {}
        Keys.onUpPressed: event => {
            event.accepted = currentIndex <= 0;
            if (event.accepted) {
                area.leftUpwards();
            }
        }

        delegate: LibraryRowView {
            id: row

            width: ListView.view?.width ?? 0
            focusPolicy: ListView.isCurrentItem || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            onMenuWanted: at => menu.openFor(row, at) // qmllint disable unqualified
        }
    }

    LibraryMenu {
        id: menu

        onPinToggled: actionID => area.togglePin(actionID)
        onClosed: if (Screens.shell.isActionLibraryPresented) {
            list.forceActiveFocus(Qt.PopupFocusReason); // the row it stood at may have gone
        }
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.space5, 360)
        visible: list.count === 0
        spacing: Theme.space2

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            symbol: "square.grid.2x2"
            size: 36
            color: Theme.secondaryText
        }

        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            style: Label.CardTitle
            text: area.presenter.emptyTitle
        }

        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            secondary: true
            text: area.presenter.emptyText
        }
    }
}
