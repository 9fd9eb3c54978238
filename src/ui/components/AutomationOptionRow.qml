import QtQuick
import QtQuick.Templates as T
import Velarc

// An option of the home screen: a press anywhere in the row turns it over.
T.AbstractButton {
    id: row

    property string title
    property string subtitle
    property bool isOn: false

    implicitHeight: Math.max(48, texts.implicitHeight + 2 * Theme.space2)
    implicitWidth: 320
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: row.clicked()
    Accessible.role: Accessible.CheckBox
    Accessible.name: title
    Accessible.description: subtitle
    Accessible.checkable: true
    Accessible.checked: isOn
    Accessible.onPressAction: row.clicked()
    Accessible.onToggleAction: row.clicked()

    contentItem: Item {
        Column {
            id: texts

            anchors.left: parent.left
            anchors.right: mark.left
            anchors.rightMargin: Theme.space3
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                width: parent.width
                text: row.title
                font.weight: Font.Medium
                Accessible.ignored: true
            }

            Label {
                width: parent.width
                style: Label.Caption
                secondary: true
                text: row.subtitle
                Accessible.ignored: true
            }
        }

        Icon {
            id: mark

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            size: 22
            symbol: row.isOn ? "checkmark.circle.fill" : "circle"
            color: row.isOn ? Theme.accentText : Theme.secondaryText
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: row.visualFocus
        }
    }
}
