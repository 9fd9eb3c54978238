import QtQuick
import Velarc

// One file of the input, with a command that takes it away.
Rectangle {
    id: chip

    property string fileName
    property string symbol

    signal removed

    implicitWidth: icon.width + label.implicitWidth + remove.implicitWidth + Theme.space3
                   + 2 * Theme.space2
    implicitHeight: Theme.hitArea
    radius: Theme.chipRadius
    color: Theme.attachmentChip
    antialiasing: true
    Accessible.role: Accessible.Grouping
    Accessible.name: fileName

    Icon {
        id: icon

        x: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        symbol: chip.symbol
        color: Theme.chipText
    }

    Text {
        id: label

        anchors.left: icon.right
        anchors.leftMargin: Theme.space2
        anchors.right: remove.left
        anchors.verticalCenter: parent.verticalCenter
        text: chip.fileName
        color: Theme.chipText
        font.pixelSize: Theme.bodySize
        elide: Text.ElideMiddle
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    IconButton {
        id: remove

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        symbol: "xmark.circle.fill"
        tip: "Remove " + chip.fileName
        foreground: Theme.chipText
        onClicked: chip.removed()
    }
}
