import QtQuick
import QtQuick.Templates as T
import Velarc

// Several lines of text in a well that scrolls. Tab leaves it; Return is a new line.
FocusScope {
    id: editor

    property alias text: area.text
    property alias placeholderText: placeholder.text
    property alias font: area.font
    property alias area: area
    property string accessibleName: placeholder.text
    property color ground: Theme.editorBackground
    property color stroke: Theme.inputBorder
    property int minimumHeight: 120

    implicitHeight: Math.max(minimumHeight, Math.min(area.implicitHeight, 2 * minimumHeight))
    implicitWidth: 320

    Rectangle {
        anchors.fill: parent
        radius: Theme.chipRadius
        color: editor.ground
        border.width: 1
        border.color: editor.stroke
        antialiasing: true

        FocusRing {
            shown: area.activeFocus
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

        T.TextArea {
            id: area

            width: flickable.width
            height: Math.max(flickable.height, implicitHeight)
            implicitHeight: contentHeight + topPadding + bottomPadding
            focus: true
            leftPadding: Theme.space3
            rightPadding: Theme.space3
            topPadding: Theme.space3
            bottomPadding: Theme.space3
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            selectByMouse: true
            color: enabled ? Theme.text : Theme.disabledText
            selectionColor: Theme.accent
            selectedTextColor: Theme.textOnAccent
            font.pixelSize: Theme.bodySize
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false)
                .forceActiveFocus(Qt.BacktabFocusReason)
            Accessible.role: Accessible.EditableText
            Accessible.name: editor.accessibleName
            Accessible.multiLine: true

            onCursorRectangleChanged: flickable.reveal(cursorRectangle)
        }

        function reveal(cursor: rect) {
            if (cursor.y - area.topPadding < contentY) {
                contentY = Math.max(0, cursor.y - area.topPadding);
            } else if (cursor.y + cursor.height + area.bottomPadding > contentY + height) {
                contentY = cursor.y + cursor.height + area.bottomPadding - height;
            }
        }
    }

    // Above the text, and deaf: a press goes through it.
    Text {
        id: placeholder

        x: Theme.space3 + 1
        y: Theme.space3 + 1
        width: parent.width - 2 * x
        visible: area.length === 0 && area.preeditText === ""
        color: Theme.placeholderText
        font: area.font
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        Accessible.ignored: true
    }
}
