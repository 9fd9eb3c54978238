import QtQuick
import Velarc

// A sentence with one command at the foot of a sheet, there while `text` is set, and read out.
Item {
    id: notice

    property string text
    property string command
    property string shortcutText
    property bool isFailure: false

    signal pressed

    visible: text !== ""
    implicitHeight: visible ? Math.max(label.implicitHeight, button.implicitHeight)
                              + 2 * Theme.space2 : 0

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }

    Icon {
        id: icon

        x: Theme.space5
        anchors.verticalCenter: parent.verticalCenter
        visible: notice.isFailure
        symbol: "exclamationmark.triangle.fill"
        color: Theme.issueText
    }

    Label {
        id: label

        anchors.left: notice.isFailure ? icon.right : parent.left
        anchors.leftMargin: notice.isFailure ? Theme.space2 : Theme.space5
        anchors.right: button.left
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        text: notice.text
        maximumLineCount: 4
        elide: Text.ElideRight
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
    }

    Button {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: Theme.space4
        anchors.verticalCenter: parent.verticalCenter
        kind: Button.Plain
        foreground: Theme.accentText
        text: notice.command
        shortcutText: notice.shortcutText
        onClicked: notice.pressed()
    }
}
