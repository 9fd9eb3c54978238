import QtQuick
import QtQuick.Templates as T
import Velarc

// A command of a menu.
T.MenuItem {
    id: item

    property string symbol
    property bool destructive: false
    readonly property color foreground: !enabled ? Theme.disabledText
        : destructive ? Theme.issueText : Theme.text

    implicitHeight: Math.max(Theme.hitArea, label.implicitHeight + Theme.space2)
    implicitWidth: label.implicitWidth + 2 * Theme.space3
                   + (symbol === "" ? 0 : Theme.symbolSize + Theme.space2)
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    hoverEnabled: true
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: item.triggered()

    contentItem: Item {
        Icon {
            id: icon

            visible: item.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: item.symbol
            color: item.foreground
        }

        Text {
            id: label

            anchors.left: icon.visible ? icon.right : parent.left
            anchors.leftMargin: icon.visible ? Theme.space2 : 0
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.foreground
            font.pixelSize: Theme.bodySize
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: Theme.chipRadius - 5
        color: item.down ? Theme.pressed : item.highlighted || item.hovered ? Theme.selection
                                                                            : "transparent"
    }
}
