import QtQuick
import Velarc

// A word on the engine's state behind a dot in its colour.
Rectangle {
    id: pill

    property string text
    property color dot: Theme.accent

    implicitWidth: label.implicitWidth + mark.width + Theme.space2 + 2 * Theme.space3
    implicitHeight: Math.max(28, label.implicitHeight + Theme.space2)
    height: implicitHeight
    radius: height / 2
    color: Theme.withOpacity(dot, Theme.dark ? 0.16 : 0.12)
    antialiasing: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Rectangle {
        id: mark

        x: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        width: 8
        height: 8
        radius: 4
        color: pill.dot
        antialiasing: true
    }

    Text {
        id: label

        anchors.left: mark.right
        anchors.leftMargin: Theme.space2
        anchors.right: parent.right
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        text: pill.text
        color: Theme.text
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
