import QtQuick
import QtQuick.Templates as T
import Velarc

// Several lines of text in a well that scrolls, of any length. Tab leaves it; Return is a new line.
FocusScope {
    id: editor

    property alias text: holder.text
    property alias placeholderText: placeholder.text
    property alias font: placeholder.font
    property string accessibleName: placeholder.text
    property color ground: Theme.editorBackground
    property color stroke: Theme.inputBorder
    property int minimumHeight: 120

    implicitHeight: Math.max(minimumHeight, Math.min(area.implicitHeight, 2 * minimumHeight))
    implicitWidth: 320

    EditedText {
        id: holder
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.chipRadius
        color: editor.ground
        border.width: 1
        border.color: editor.stroke
        antialiasing: true

        FocusRing {
            shown: editor.activeFocus
            targetRadius: Theme.chipRadius
        }
    }

    Flickable {
        id: flickable

        anchors.fill: parent
        anchors.margins: 1
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: area.height
        T.ScrollBar.vertical: ScrollBar {}

        Loader {
            id: area

            readonly property bool isEmpty: item?.isEmpty ?? true
            readonly property rect caret: item?.caret ?? Qt.rect(0, 0, 0, 0)

            width: flickable.width
            height: Math.max(flickable.height, implicitHeight)
            focus: true
            sourceComponent: holder.isLong ? longArea : shortArea
            onCaretChanged: flickable.reveal(caret)
        }

        function reveal(caret: rect) {
            if (caret.y - Theme.space3 < contentY) {
                contentY = Math.max(0, caret.y - Theme.space3);
            } else if (caret.y + caret.height + Theme.space3 > contentY + height) {
                contentY = caret.y + caret.height + Theme.space3 - height;
            }
        }
    }

    Component {
        id: shortArea

        // qmllint disable unqualified
        EditorArea {
            focus: true
            edited: holder
            font: editor.font
            Accessible.name: editor.accessibleName
        }
        // qmllint enable unqualified
    }

    Component {
        id: longArea

        // qmllint disable unqualified
        LongEditorArea {
            focus: true
            edited: holder
            font: editor.font
            accessibleName: editor.accessibleName
        }
        // qmllint enable unqualified
    }

    // Above the text, and deaf: a press goes through it.
    Text {
        id: placeholder

        x: Theme.space3 + 1
        y: Theme.space3 + 1
        width: parent.width - 2 * x
        visible: area.isEmpty
        color: Theme.placeholderText
        font.pixelSize: Theme.bodySize
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
}
