import QtQuick
import Velarc

// A symbol and a text side by side, the text elided where the room is short.
Item {
    id: pair

    property string symbol
    property string text
    property color color: Theme.text
    property color symbolColor: color
    property alias font: label.font
    property int elide: Text.ElideRight
    property bool centred: true
    readonly property real symbolWidth: symbol === "" ? 0
        : Theme.symbolSize + (text === "" ? 0 : Theme.space2 - 2)

    implicitWidth: symbolWidth + (text === "" ? 0 : Math.ceil(label.implicitWidth))
    implicitHeight: Math.max(symbol === "" ? 0 : Theme.symbolSize, label.implicitHeight)

    Item {
        anchors.verticalCenter: parent.verticalCenter
        x: pair.centred ? Math.max(0, Math.round((pair.width - pair.implicitWidth) / 2)) : 0
        width: pair.width - x
        height: pair.implicitHeight

        Icon {
            visible: pair.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: pair.symbol
            color: pair.symbolColor
        }

        Text {
            id: label

            x: pair.symbolWidth
            width: Math.max(0, Math.min(Math.ceil(implicitWidth), pair.width - pair.symbolWidth))
            anchors.verticalCenter: parent.verticalCenter
            text: pair.text
            color: pair.color
            elide: pair.elide
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
