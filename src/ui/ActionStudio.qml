import QtQuick
import Velarc

// The editor of one action.
Sheet {
    id: sheet

    readonly property StudioPresenter presenter: Screens.studio

    title: "Action Studio"
    subtitle: "Design how this action thinks, runs, and returns output."
    preferredWidth: 720
    preferredHeight: 800
    commands: IconButton {
        symbol: "xmark.circle.fill"
        tip: "Close"
        shortcutText: "Esc"
        onClicked: sheet.presenter.cancel()
    }
    onAboutToShow: identity.start(presenter.isNew)

    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onReturnPressed: sheet.presenter.save()
        Keys.onEnterPressed: sheet.presenter.save()

        ScrollArea {
            anchors.fill: parent
            padding: Theme.space5
            topPadding: Theme.space1
            spacing: Theme.space5

            StudioIdentity {
                id: identity

                width: parent.width
                focus: true
            }

            StudioModel {
                width: parent.width
            }

            StudioPrompt {
                width: parent.width
            }

            StudioOutput {
                width: parent.width
            }

            StudioSkills {
                width: parent.width
            }
        }
    }

    foot: [
        Button {
            text: "Cancel"
            shortcutText: "Esc"
            onClicked: sheet.presenter.cancel()
        },
        Button {
            kind: Button.Prominent
            text: "Save Action"
            shortcutText: "Ctrl+Return"
            onClicked: sheet.presenter.save()
        }
    ]
}
