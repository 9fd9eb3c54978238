import QtQuick
import Velarc

// The text and the files that an action runs on.
Card {
    id: card

    readonly property CanvasPresenter presenter: Screens.canvas
    readonly property bool isDropTargeted: presenter.isDropTargeted
    property real availableHeight: 0
    readonly property real heightBesideEditor: 2 * padding + header.height + spacing
        + takenBy(caption) + takenBy(chipFlow) + takenBy(notice)

    objectName: "input-card"

    // A press beside the controls is meant for the text.
    TapHandler {
        onTapped: editor.forceActiveFocus()
    }

    // Once the canvas has settled; the card goes with its phase, and the timer with it.
    Timer {
        interval: 200
        running: true
        onTriggered: {
            if (!Screens.shell.hasSheet) {
                editor.forceActiveFocus();
            }
        }
    }

    Item {
        id: header

        width: parent.width
        implicitHeight: commands.implicitHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Input"
        }

        Row {
            id: commands

            anchors.right: parent.right
            spacing: Theme.space2

            Button {
                kind: Button.Plain
                symbol: "xmark"
                text: "Clear"
                focusPolicy: Qt.TabFocus
                foreground: Theme.secondaryText
                onClicked: card.presenter.clear()
            }

            Button {
                symbol: "doc.on.doc"
                text: card.presenter.pasteLabel
                focusPolicy: Qt.TabFocus
                foreground: Theme.accentText
                tip: "Take the clipboard as input"
                shortcutText: "Ctrl+Shift+V"
                onClicked: card.presenter.paste()
            }
        }
    }

    TextEditor {
        id: editor

        width: parent.width
        height: Math.max(210, Math.floor(card.availableHeight - card.heightBesideEditor))

        Glow {
            z: -1
            visible: card.isDropTargeted
            corner: Theme.chipRadius
        }
        placeholderText: "Type, paste, or drop a file — then hit Run"
        stroke: card.isDropTargeted ? Theme.inputBorderDropTargeted : Theme.inputBorder
        text: card.presenter.quickInput
        onTextChanged: card.presenter.quickInput = text
    }

    Label {
        id: caption

        visible: chips.count > 0
        style: Label.Caption
        secondary: true
        text: "Attachments"
    }

    Flow {
        id: chipFlow

        width: parent.width
        visible: chips.count > 0
        spacing: Theme.space2

        Repeater {
            id: chips

            model: card.presenter.attachments

            AttachmentChipView {
                required property string attachmentID
                required fileName
                required symbol

                width: Math.min(implicitWidth, (parent as Flow)?.width ?? 320, 320)
                onRemoved: Screens.canvas.removeAttachment(attachmentID)
            }
        }
    }

    Label {
        id: notice

        width: parent.width
        visible: text !== ""
        style: Label.Caption
        secondary: true
        text: card.presenter.notice
    }

    function takenBy(item: Item): real {
        return item.visible ? item.height + spacing : 0;
    }
}
