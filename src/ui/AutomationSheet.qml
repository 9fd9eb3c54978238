import QtQuick
import Velarc

// What happens by itself around a run.
Sheet {
    id: sheet

    title: "Automation"
    preferredWidth: 460
    commands: Button {
        kind: Button.Prominent
        text: "Done"
        focus: true
        onClicked: sheet.close()
    }

    Column {
        width: parent?.width ?? 0
        leftPadding: Theme.space3
        rightPadding: Theme.space3
        bottomPadding: Theme.space4

        AutomationOptionRow {
            width: parent.width - 2 * Theme.space3
            title: "Auto-run on Paste"
            subtitle: "Run the selected action immediately after Paste."
            isOn: Screens.canvas.autoRunOnPaste
            onClicked: Screens.canvas.toggleAutoRunOnPaste()
        }

        AutomationOptionRow {
            width: parent.width - 2 * Theme.space3
            title: "Auto-copy Result"
            subtitle: "Copy the response to clipboard when a run finishes."
            isOn: Screens.canvas.autoCopyResult
            onClicked: Screens.canvas.toggleAutoCopyResult()
        }
    }
}
