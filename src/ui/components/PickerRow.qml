import QtQuick
import Velarc

// The text of a choice, with its dot where it has one.
Item {
    id: row

    property string text
    property color dot: "transparent"
    property bool strong: false

    implicitHeight: label.implicitHeight

    Rectangle {
        id: mark

        visible: row.dot.a > 0
        anchors.verticalCenter: parent.verticalCenter
        width: 12
        height: 12
        radius: 6
        color: row.dot
        antialiasing: true
    }

    Text {
        id: label

        anchors.left: mark.visible ? mark.right : parent.left
        anchors.leftMargin: mark.visible ? Theme.space2 : 0
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.text
        color: Theme.text
        font.pixelSize: Theme.bodySize
        font.weight: row.strong ? Font.DemiBold : Font.Normal
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
