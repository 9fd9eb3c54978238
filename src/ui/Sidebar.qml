import QtQuick
import QtQuick.Templates as T
import QtQuick.Window
import Velarc

// The user's actions. Choosing one selects it.
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
        height: 52

        Label {
            anchors.left: parent.left
            anchors.leftMargin: Theme.space4
            anchors.right: commands.left
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Actions"
            elide: Text.ElideRight
        }

        Row {
            id: commands

            anchors.right: parent.right
            anchors.rightMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter

            IconButton {
                symbol: "plus"
                tip: "New"
                shortcutText: "Ctrl+N"
                onClicked: sidebar.presenter.newAction()
            }

            IconButton {
                symbol: "ellipsis.circle"
                tip: "More"
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
        anchors.rightMargin: Theme.space2
        bottomMargin: Theme.space3
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        activeFocusOnTab: false
        cacheBuffer: 0 // a row is quickly made, and what is out of sight must not take the focus
        model: sidebar.presenter.rows
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
        Keys.onUpPressed: moveFocus(-1)
        Keys.onDownPressed: moveFocus(1)

        // Makes and shows the row that it comes to, as Tab would not.
        function moveFocus(by: int) {
            const next = indexAt(1, (Window.activeFocusItem?.y ?? 0) + 1) + by;
            if (next >= 0 && next < count) {
                positionViewAtIndex(next, ListView.Contain);
                itemAtIndex(next)?.forceActiveFocus(Qt.TabFocusReason);
            }
        }

        delegate: ListRow {
            required property string actionID
            required property string name
            required property string colorHex
            required symbol

            width: ListView.view?.width ?? 0
            text: name
            symbolColor: colorHex
            isSelected: actionID === Screens.sidebar.selectedID
            onClicked: Screens.sidebar.select(actionID)
        }
    }
}
