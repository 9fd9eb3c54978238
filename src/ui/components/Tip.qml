import QtQuick
import QtQuick.Templates as T
import Velarc

// What a control is called, shown beside it after a moment.
T.ToolTip {
    id: tip

    property bool wanted: false

    visible: wanted && text !== ""
    delay: 600
    timeout: 8000
    margins: Theme.space2
    padding: Theme.space2
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + Theme.space2 - 2 : 0
    implicitWidth: Math.min(360, label.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    contentWidth: implicitWidth - leftPadding - rightPadding
    contentHeight: label.implicitHeight

    contentItem: Text {
        id: label

        text: tip.text
        color: Theme.text
        font.pixelSize: Theme.captionSize
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }

    background: Rectangle {
        color: Theme.popupGround
        border.color: Theme.hairline
        radius: Theme.controlRadius - 2
    }
}
