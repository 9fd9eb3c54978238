import QtQuick
import Velarc

// A setting that is on or off, with its name and, where there is one, a line about it.
Item {
    id: row

    property string title
    property string subtitle
    property bool isOn: false

    signal toggled

    implicitHeight: Math.max(texts.implicitHeight, toggle.implicitHeight) + Theme.space2
    implicitWidth: 320

    Column {
        id: texts

        anchors.left: parent.left
        anchors.right: toggle.left
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: row.title
            Accessible.ignored: true
        }

        Label {
            width: parent.width
            visible: row.subtitle !== ""
            style: Label.Caption
            secondary: true
            text: row.subtitle
        }
    }

    TapHandler {
        onTapped: row.toggled()
    }

    Switch {
        id: toggle

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.title
        checked: row.isOn
        onClicked: row.toggled()
    }
}
