import QtQuick
import Velarc

// A password field: dots of one width, which nobody can copy from or read out.
SecretInput {
    id: field

    property string placeholderText
    readonly property int margin: Theme.space3
    readonly property real dotWidth: metrics.advanceWidth
    // How far the line is moved to the left, so that the cursor can be seen.
    property real offset: 0

    accessibleName: placeholderText
    implicitWidth: 240
    implicitHeight: Math.max(Theme.controlHeight, metrics.height + 2 * Theme.space2 - 2)
    cursorRectangle: Qt.rect(margin + cursorPosition * dotWidth - offset, line.y, 1, line.height)
    onCursorChanged: follow()
    onWidthChanged: follow()
    // The rest of what assistive programs see comes from SecretInput.
    Accessible.role: Accessible.EditableText
    Keys.onMenuPressed: menu.popup(field, margin, height)

    function follow() {
        const at = cursorPosition * dotWidth;
        const room = Math.max(0, width - 2 * margin - 2);
        offset = Math.max(0, Math.min(offset, length * dotWidth - room));
        offset = Math.min(at, Math.max(offset, at - room));
    }

    function placeAt(x: real): int {
        return Math.round((x - margin + offset) / dotWidth);
    }

    TextMetrics {
        id: metrics

        font.pixelSize: Theme.cardTitleSize
        text: "\u2022"
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.well
        border.width: 1
        border.color: mouse.containsMouse && field.enabled ? Theme.secondaryText
                                                           : Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: field.activeFocus
        }
    }

    Item {
        id: line

        // Only the dots that can be seen are drawn.
        readonly property int first: Math.floor(field.offset / field.dotWidth)
        readonly property int shown: Math.min(field.length - first,
            Math.ceil(width / field.dotWidth) + 1)

        x: field.margin
        y: Math.round((field.height - height) / 2)
        width: field.width - 2 * field.margin
        height: metrics.height
        clip: true

        Rectangle {
            x: field.selectionStart * field.dotWidth - field.offset
            width: (field.selectionEnd - field.selectionStart) * field.dotWidth
            height: parent.height
            visible: width > 0 && field.activeFocus
            color: Theme.accent
        }

        Text {
            x: line.first * field.dotWidth - field.offset
            text: "\u2022".repeat(Math.max(0, line.shown))
            color: field.enabled ? Theme.text : Theme.disabledText
            font: metrics.font
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Rectangle {
            x: Math.min(parent.width - width, field.cursorPosition * field.dotWidth - field.offset)
            width: 1
            height: parent.height
            visible: field.activeFocus
            color: Theme.text
        }
    }

    Text {
        x: field.margin
        width: field.width - 2 * x
        height: field.height
        visible: field.length === 0
        text: field.placeholderText
        font.pixelSize: Theme.bodySize
        color: Theme.placeholderText
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.MiddleButton | Qt.RightButton
        hoverEnabled: true
        cursorShape: Qt.IBeamCursor
        Accessible.ignored: true
        onPressed: event => {
            field.forceActiveFocus(Qt.MouseFocusReason);
            if (event.button === Qt.RightButton) {
                menu.popup(field, event.x, event.y);
                return;
            }
            field.placeCursor(field.placeAt(event.x));
            if (event.button === Qt.MiddleButton) {
                field.pasteSelection();
            }
        }
        onPositionChanged: event => {
            if ((event.buttons & Qt.LeftButton) !== 0) {
                field.selectUpTo(field.placeAt(event.x));
            }
        }
        onDoubleClicked: field.selectAll()
    }

    Menu {
        id: menu

        MenuItem {
            text: "Paste"
            onTriggered: field.paste()
        }
    }
}
