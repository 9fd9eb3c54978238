import QtQuick
import Velarc

// A word on a state, on a pill in the state's colour.
Rectangle {
    id: badge

    property string text
    property color tint: Theme.success
    property color foreground: Theme.text

    implicitWidth: label.implicitWidth + 2 * Theme.space2
    implicitHeight: label.implicitHeight + Theme.space1
    width: implicitWidth
    height: implicitHeight
    radius: height / 2
    color: Theme.withOpacity(tint, 0.16)
    antialiasing: true
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Text {
        id: label

        anchors.centerIn: parent
        text: badge.text
        color: badge.foreground
        font.pixelSize: Theme.captionSize
        font.weight: Font.DemiBold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
