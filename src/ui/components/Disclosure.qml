import QtQuick
import QtQuick.Templates as T
import Velarc

// A line that opens and closes what stands under it.
Column {
    id: disclosure

    property string title
    property string symbol
    property bool isOpen: false
    default property Component content

    // The user pressed the line; whoever owns `isOpen` changes it.
    signal toggled

    spacing: Theme.space2

    T.AbstractButton {
        id: line

        width: parent.width
        implicitHeight: Theme.hitArea
        hoverEnabled: true
        focusPolicy: Qt.StrongFocus
        text: disclosure.title
        leftPadding: Theme.space1
        onClicked: disclosure.toggled()
        Keys.onReturnPressed: line.clicked()
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.checkable: true
        Accessible.checked: disclosure.isOpen
        Accessible.onPressAction: line.clicked()

        contentItem: Row {
            spacing: Theme.space2

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: disclosure.isOpen ? "chevron.down" : "chevron.right"
                size: 12
                color: Theme.secondaryText
            }

            Icon {
                anchors.verticalCenter: parent.verticalCenter
                visible: disclosure.symbol !== ""
                symbol: disclosure.symbol
                color: Theme.secondaryText
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: line.text
                color: Theme.text
                font.pixelSize: Theme.bodySize
                font.weight: Font.Medium
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }

        background: Rectangle {
            radius: Theme.controlRadius
            color: line.down ? Theme.pressed : line.hovered ? Theme.hover : "transparent"

            FocusRing {
                shown: line.visualFocus
            }
        }
    }

    Loader {
        width: parent.width
        active: disclosure.isOpen
        visible: active
        sourceComponent: disclosure.content
    }
}
