import QtQuick
import Velarc

// Asks for the path of a file, where the desktop has no dialog for it.
FocusScope {
    id: form

    readonly property TransferPresenter transfer: Screens.transfer

    implicitHeight: column.implicitHeight

    Column {
        id: column

        width: parent.width
        spacing: Theme.space2

        Label {
            text: form.transfer.pathTitle
            font.weight: Font.DemiBold
        }

        Item {
            width: parent.width
            implicitHeight: path.implicitHeight

            TextField {
                id: path

                anchors.left: parent.left
                anchors.right: commands.left
                anchors.rightMargin: Theme.space2
                focus: true
                placeholderText: "Path of the file"
                text: form.transfer.path
                onTextEdited: form.transfer.path = text
                Keys.onReturnPressed: form.transfer.acceptPath()
                Keys.onEnterPressed: form.transfer.acceptPath()
            }

            Row {
                id: commands

                anchors.right: parent.right
                spacing: Theme.space2

                Button {
                    text: "Cancel"
                    shortcutText: "Esc"
                    onClicked: form.transfer.cancel()
                }

                Button {
                    kind: Button.Prominent
                    text: form.transfer.pathCommand
                    onClicked: form.transfer.acceptPath()
                }
            }
        }
    }
}
