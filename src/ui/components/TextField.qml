import QtQuick
import QtQuick.Templates as T
import Velarc

// One line of text. Its placeholder is its name unless another is given.
T.TextField {
    id: field

    property string accessibleName: placeholderText

    implicitHeight: Math.max(Theme.controlHeight, contentHeight + topPadding + bottomPadding)
    implicitWidth: 240
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    topPadding: Theme.space2 - 1
    bottomPadding: Theme.space2 - 1
    color: enabled ? Theme.text : Theme.disabledText
    placeholderTextColor: Theme.placeholderText
    selectionColor: Theme.accent
    selectedTextColor: Theme.textOnAccent
    selectByMouse: true
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: Theme.bodySize
    Accessible.role: Accessible.EditableText
    Accessible.name: accessibleName

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.well
        border.width: 1
        border.color: field.hovered && field.enabled ? Theme.secondaryText : Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: field.activeFocus
        }
    }

    Text {
        x: field.leftPadding
        y: field.topPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height - field.topPadding - field.bottomPadding
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        font: field.font
        color: field.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
