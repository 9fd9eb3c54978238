import QtQuick
import Velarc

// A word about the thing beside it.
Rectangle {
    id: tag

    property alias text: label.text
    property color tint: Theme.secondaryText

    implicitWidth: label.implicitWidth + 2 * Theme.space2
    implicitHeight: label.implicitHeight + Theme.space1
    radius: height / 2
    color: Theme.withOpacity(tint, Theme.dark ? 0.22 : 0.12)
    antialiasing: true

    Label {
        id: label

        anchors.centerIn: parent
        style: Label.Caption
        font.weight: Font.Medium
        color: tag.tint
        wrapMode: Text.NoWrap
    }
}
