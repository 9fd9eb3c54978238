import QtQuick
import Velarc

// What one entry of a file does to the library.
Item {
    id: row

    required property string name
    required property string details
    required property string symbol
    required property string colorHex

    implicitHeight: Math.max(44, texts.implicitHeight + Theme.space3)
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: details

    IconTile {
        id: tile

        x: Theme.space2
        anchors.verticalCenter: parent.verticalCenter
        symbol: row.symbol
        tint: row.colorHex
    }

    Column {
        id: texts

        anchors.left: tile.right
        anchors.leftMargin: Theme.space3
        anchors.right: parent.right
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.name
            elide: Text.ElideMiddle
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }

        Label {
            width: parent.width
            visible: text !== ""
            style: Label.Caption
            secondary: true
            text: row.details
            elide: Text.ElideMiddle
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
    }
}
