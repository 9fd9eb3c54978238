import QtQuick
import QtQuick.Templates as T
import Velarc

// One engine to choose: its symbol, its name, what it is and how it stands.
T.RadioButton {
    id: card

    property string symbol
    property color colorHex: Theme.accent
    property string subtitle
    property string status
    property bool isSelected: false
    property bool includeSubtitle: true
    property bool entersByTab: true

    // An arrow key asks for the card that many places on, or that many rows down.
    signal stepped(int by)
    signal rowStepped(int by)

    implicitWidth: 170
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: Theme.space3
    hoverEnabled: true
    checkable: false // whoever owns the choice makes it
    checked: isSelected
    autoExclusive: false
    focusPolicy: entersByTab || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
    opacity: enabled ? 1 : 0.5
    Keys.onLeftPressed: stepped(-1)
    Keys.onRightPressed: stepped(1)
    Keys.onUpPressed: rowStepped(-1)
    Keys.onDownPressed: rowStepped(1)
    Keys.onReturnPressed: card.clicked()
    Keys.onEnterPressed: card.clicked()
    Accessible.name: text
    Accessible.description: (includeSubtitle ? subtitle + ". " : "") + status
    Accessible.checkable: true
    Accessible.checked: isSelected
    Accessible.onPressAction: card.clicked()

    contentItem: Item {
        implicitHeight: Math.max(tile.height, texts.y + texts.implicitHeight)

        IconTile {
            id: tile

            size: 34
            symbolSize: 16
            tileOpacity: 0.14
            symbol: card.symbol
            tint: card.colorHex
        }

        Icon {
            anchors.right: parent.right
            visible: card.isSelected
            symbol: "checkmark.circle.fill"
            size: 20
            color: Theme.accentText
        }

        Column {
            id: texts

            y: tile.height + Theme.space2
            width: parent.width
            spacing: 2

            Label {
                width: parent.width
                text: card.text
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }

            Label {
                width: parent.width
                visible: card.includeSubtitle
                style: Label.Caption
                text: card.subtitle
                Accessible.ignored: true
            }

            Label {
                width: parent.width
                style: Label.Caption
                secondary: true
                text: card.status
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Theme.chipRadius
        color: card.down ? Theme.controlPressed : card.hovered ? Theme.controlHover : Theme.control
        border.width: card.isSelected ? 2 : 1
        border.color: card.isSelected ? Theme.accent : Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: card.visualFocus
            targetRadius: Theme.chipRadius
        }
    }
}
