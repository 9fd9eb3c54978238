import QtQuick
import QtQuick.Templates as T
import Velarc

// A row of a list that can be chosen: a symbol, a name, and what stands at its end.
T.ItemDelegate {
    id: row

    property string symbol
    property color symbolColor: Theme.secondaryText
    property bool isSelected: false
    property bool showsFocus: visualFocus
    default property alias trailing: trailingRow.data

    implicitHeight: Math.max(Theme.hitArea + 4, label.implicitHeight + Theme.space3)
    implicitWidth: 200
    leftPadding: Theme.space2
    rightPadding: Theme.space2
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: row.clicked()

    contentItem: Item {
        Icon {
            id: icon

            visible: row.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: row.symbol
            size: 18
            color: Theme.symbolColor(row.symbolColor)
        }

        Text {
            id: label

            anchors.left: icon.visible ? icon.right : parent.left
            anchors.leftMargin: icon.visible ? Theme.space2 + 2 : 0
            anchors.right: trailingRow.left
            anchors.rightMargin: trailingRow.children.length > 0 ? Theme.space2 : 0
            anchors.verticalCenter: parent.verticalCenter
            text: row.text
            color: Theme.text
            font.pixelSize: Theme.bodySize
            font.weight: row.isSelected ? Font.DemiBold : Font.Normal
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignLeft
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Row {
            id: trailingRow

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space2
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius - 2
        color: row.isSelected ? Theme.selection
            : row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"
        border.width: row.showsFocus ? 2 : 0 // the ring, without an item of its own in every row
        border.color: Theme.focusRing
    }

    TipLoader {
        control: row
        text: label.truncated ? row.text : ""
    }
}
