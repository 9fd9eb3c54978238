import QtQuick
import Velarc

// A text of any length while it is edited.
FocusScope {
    id: area

    required property EditedText edited
    property alias font: body.font
    readonly property bool isEmpty: false
    readonly property rect caret: Qt.rect(body.x + body.caretRectangle.x,
        body.y + body.caretRectangle.y, 1, body.caretRectangle.height)
    property string accessibleName

    implicitHeight: body.implicitHeight + 2 * body.y

    LongTextEditItem {
        id: body

        x: Theme.space3
        y: Theme.space3
        width: area.width - 2 * x
        height: Math.max(implicitHeight, area.height - 2 * y)
        focus: true
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.textOnAccent
        text: area.edited.text
        onTextChanged: area.edited.edit(text)
        onCopyRequested: text => Screens.result.copyText(text)
        Component.onCompleted: setCaret(area.edited.caret)
        Accessible.role: Accessible.EditableText
        Accessible.name: area.accessibleName
        Accessible.multiLine: true

        Rectangle {
            x: body.caretRectangle.x
            y: body.caretRectangle.y
            width: 1
            height: body.caretRectangle.height
            visible: body.activeFocus && !blink.isOff
            color: Theme.text
        }
    }

    Timer {
        id: blink

        property bool isOff: false

        interval: Application.styleHints.cursorFlashTime / 2
        repeat: true
        running: body.activeFocus && interval > 0
        onRunningChanged: isOff = false
        onTriggered: isOff = !isOff
    }

    Connections {
        target: body

        function onCaretChanged() {
            blink.isOff = false;
            blink.restart();
        }
    }
}
