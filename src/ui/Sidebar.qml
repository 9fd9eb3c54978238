import QtQuick
import QtQuick.Templates as T
import Velarc

// The user's actions. Choosing one selects it, and so does coming to it with the arrow keys.
FocusScope {
    id: sidebar

    readonly property SidebarPresenter presenter: Screens.sidebar

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebarGround
    }

    Item {
        id: bar

        width: parent.width
        height: Math.max(52, commands.implicitHeight + Theme.space2)

        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.space4
            anchors.right: commands.left
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Actions"
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
        }

        Row {
            id: commands

            anchors.right: parent.right
            anchors.rightMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter

            IconButton {
                symbol: "plus"
                tip: "New"
                focusPolicy: Qt.TabFocus
                shortcutText: "Ctrl+N"
                onClicked: sidebar.presenter.newAction()
            }

            IconButton {
                symbol: "ellipsis.circle"
                tip: "More"
                focusPolicy: Qt.TabFocus
                onClicked: sidebar.presenter.openMore()
            }
        }
    }

    ListView {
        id: list

        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: Theme.space2
        bottomMargin: Theme.space3
        clip: true
        focus: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        activeFocusOnTab: false
        cacheBuffer: 0 // a row is quickly made, and what is out of sight must not take the focus
        highlightMoveDuration: 0
        model: sidebar.presenter.rows
        onCountChanged: sidebar.follow()
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

        delegate: ListRow {
            required property int index
            required property string actionID
            required property string name
            required property string colorHex
            required symbol

            // Beside the scroll bar.
            width: (ListView.view?.width ?? 0) - Theme.space3
            focusPolicy: ListView.isCurrentItem || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            text: name
            symbolColor: colorHex
            isSelected: actionID === Screens.sidebar.selectedID
            onClicked: {
                ListView.view.currentIndex = index;
                Screens.sidebar.select(actionID);
            }
        }

        Keys.onPressed: event => {
            const to = sidebar.rowReachedBy(event.key);
            event.accepted = to >= 0;
            if (event.accepted) {
                sidebar.goTo(to);
            }
        }
    }

    Connections {
        target: sidebar.presenter

        function onSelectedIDChanged() {
            sidebar.follow();
        }
    }

    // Brings the keyboard's place to the selected action, wherever that was chosen.
    function follow() {
        list.currentIndex = presenter.rowOf(presenter.selectedID, list.currentIndex);
    }

    // The row that a key leads to from the current one; -1 if it leads nowhere.
    function rowReachedBy(key: int): int {
        const page = Math.max(1, Math.floor(list.height / Theme.hitArea) - 2);
        const last = list.count - 1;
        switch (key) {
        case Qt.Key_Up:
            return Math.max(0, list.currentIndex - 1);
        case Qt.Key_Down:
            return Math.min(last, list.currentIndex + 1);
        case Qt.Key_PageUp:
            return Math.max(0, list.currentIndex - page);
        case Qt.Key_PageDown:
            return Math.min(last, list.currentIndex + page);
        case Qt.Key_Home:
            return Math.min(0, last);
        case Qt.Key_End:
            return last;
        }
        return -1;
    }

    function goTo(index: int) {
        list.currentIndex = index;
        const row = list.currentItem as ListRow;
        if (row !== null) {
            row.forceActiveFocus();
            row.focusReason = Qt.TabFocusReason; // it is to be seen
            row.clicked();
        }
    }
}
