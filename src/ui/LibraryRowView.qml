import QtQuick
import QtQuick.Templates as T
import Velarc

// An action of the library.
T.ItemDelegate {
    id: row

    required property int index
    required property string actionID
    required property string name
    required property string symbol
    required property string colorHex
    required property string engineTag
    required property bool isPinned
    required property bool isChosen

    // By a secondary click or a long press at that point, by the menu key at the row's own.
    signal menuWanted(point at)

    implicitHeight: Math.max(44, label.implicitHeight + Theme.space4)
    leftPadding: Theme.space2
    rightPadding: Theme.space3
    hoverEnabled: true
    text: name
    onClicked: choose()
    onPressAndHold: wantMenuAt(Qt.point(pressX, pressY))
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: engineTag + (isPinned ? ", pinned" : "") + (isChosen ? ", selected" : "")
    Accessible.selectable: true
    Accessible.selected: isChosen
    Accessible.onPressAction: row.clicked()
    Keys.onReturnPressed: row.clicked()
    Keys.onEnterPressed: row.clicked()
    Keys.onMenuPressed: row.wantMenu()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier) !== 0) {
            event.accepted = true;
            row.wantMenu();
        }
    }

    function choose() {
        if (Screens.transfer.stage === TransferPresenter.ChoosingAction) {
            Screens.transfer.exportAction(actionID);
        } else {
            Screens.library.choose(actionID);
        }
    }

    function wantMenu() {
        wantMenuAt(Qt.point(Theme.space8, height - Theme.space2));
    }

    function wantMenuAt(at: point) {
        ListView.view.currentIndex = index;
        menuWanted(at);
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => row.wantMenuAt(point.position)
    }

    contentItem: Item {
        IconTile {
            id: tile

            anchors.verticalCenter: parent.verticalCenter
            symbol: row.symbol
            tint: row.colorHex
        }

        Text {
            id: label

            anchors.left: tile.right
            anchors.leftMargin: Theme.space3
            anchors.right: trailing.left
            anchors.rightMargin: Theme.space2
            anchors.verticalCenter: parent.verticalCenter
            text: row.name
            color: Theme.text
            font.pixelSize: Theme.bodySize
            font.weight: row.isChosen ? Font.DemiBold : Font.Normal
            elide: Text.ElideMiddle
            maximumLineCount: 1
            horizontalAlignment: Text.AlignLeft
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Row {
            id: trailing

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space2

            Tag {
                anchors.verticalCenter: parent.verticalCenter
                text: row.engineTag
            }

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.isChosen
                symbol: "checkmark.circle.fill"
                color: Theme.accentText
            }

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.isPinned
                symbol: "pin.fill"
                color: Theme.secondaryText
            }
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: row.activeFocus
            gap: -2
        }
    }

    TipLoader {
        control: row
        text: label.truncated ? row.name : ""
    }
}
