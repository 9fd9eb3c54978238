import QtQuick
import Velarc

// The small menu of the rest of the program.
Sheet {
    id: sheet

    readonly property MorePresenter presenter: Screens.more

    title: "More"
    preferredWidth: 480
    commands: Button {
        text: "Done"
        onClicked: sheet.close()
    }

    ScrollArea {
        anchors.fill: parent
        implicitHeight: contentHeight
        padding: Theme.space3
        topPadding: Theme.space1
        spacing: Theme.space3

        MoreSection {
            width: parent.width
            title: "Utilities"

            MoreRow {
                width: parent.width
                focus: true
                text: "Manage Actions"
                symbol: "square.grid.2x2"
                onClicked: sheet.presenter.openActionLibrary()
            }

            MoreRow {
                width: parent.width
                text: "Engine Room"
                symbol: "gearshape.2"
                onClicked: sheet.presenter.openEngineRoom()
            }

            MoreRow {
                width: parent.width
                text: "Usage"
                symbol: "chart.bar.doc.horizontal"
                onClicked: sheet.presenter.openUsage()
            }
        }

        MoreSection {
            width: parent.width
            title: "Create"

            MoreRow {
                width: parent.width
                text: "New Action"
                symbol: "plus"
                onClicked: sheet.presenter.newAction()
            }
        }

        MoreSection {
            width: parent.width
            title: "Automation Defaults"

            AutomationOptionRow {
                width: parent.width
                title: "Auto-run on Paste"
                subtitle: "Run the selected action immediately after Paste."
                isOn: Screens.canvas.autoRunOnPaste
                onClicked: Screens.canvas.toggleAutoRunOnPaste()
            }

            AutomationOptionRow {
                width: parent.width
                title: "Auto-copy Result"
                subtitle: "Copy the response to clipboard when a run finishes."
                isOn: Screens.canvas.autoCopyResult
                onClicked: Screens.canvas.toggleAutoCopyResult()
            }
        }

        MoreSection {
            width: parent.width
            title: "Experience"

            SwitchRow {
                x: Theme.space3
                width: parent.width - 2 * Theme.space3
                title: "New Run Experience"
                isOn: sheet.presenter.isNewRunExperience
                onToggled: sheet.presenter.toggleNewRunExperience()
            }
        }
    }
}
