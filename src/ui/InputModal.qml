import QtQuick
import Velarc

// Asks for the input of an action that waits for one.
Sheet {
    id: sheet

    title: "Input Required"
    preferredWidth: 520

    Column {
        width: parent?.width ?? 0
        leftPadding: Theme.space5
        rightPadding: Theme.space5
        bottomPadding: Theme.space5
        spacing: Theme.space3

        Label {
            width: parent.width - 2 * Theme.space5
            secondary: true
            text: "Paste or type what you want to send."
        }

        TextEditor {
            width: parent.width - 2 * Theme.space5
            minimumHeight: 180
            focus: true
            accessibleName: "Input"
            text: Screens.canvas.inputModalText
            onTextChanged: Screens.canvas.inputModalText = text
        }

        Shortcut {
            sequences: ["Ctrl+Return", "Ctrl+Enter"]
            onActivated: Screens.canvas.submitInputModal()
        }
    }

    foot: [
        Button {
            text: "Cancel"
            onClicked: Screens.canvas.dismissInputModal()
        },
        Button {
            kind: Button.Prominent
            text: "Run"
            shortcutText: "Ctrl+Return"
            onClicked: Screens.canvas.submitInputModal()
        }
    ]
}
