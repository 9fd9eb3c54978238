import QtQuick
import QtQuick.Templates as T
import Velarc

// What an import would do, before it is done.
FocusScope {
    id: preview

    readonly property TransferPresenter transfer: Screens.transfer

    Column {
        id: head

        x: Theme.space5
        width: parent.width - 2 * Theme.space5
        spacing: 2

        Label {
            width: parent.width
            style: Label.CardTitle
            text: preview.transfer.previewTitle
            elide: Text.ElideMiddle
            wrapMode: Text.NoWrap
        }

        Label {
            width: parent.width
            secondary: true
            text: preview.transfer.previewSummary
        }
    }

    ListView {
        id: list

        anchors.top: head.bottom
        anchors.topMargin: Theme.space2
        anchors.bottom: commands.top
        anchors.bottomMargin: Theme.space3
        x: Theme.space3
        width: parent.width - 2 * Theme.space3
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        highlightMoveDuration: 0
        model: preview.transfer.previewRows
        section.property: "section"
        section.delegate: SectionHeader {
            required property string section

            width: ListView.view?.width ?? 0
            topPadding: Theme.space3
            bottomPadding: Theme.space1
            leftPadding: Theme.space2
            text: section
        }
        Accessible.role: Accessible.List
        Accessible.name: "Actions of the file"
        T.ScrollBar.vertical: ScrollBar {}

        delegate: ImportRowView {
            width: ListView.view?.width ?? 0
        }

        FocusRing {
            shown: list.activeFocus
            gap: -2
        }
    }

    Row {
        id: commands

        anchors.right: parent.right
        anchors.rightMargin: Theme.space5
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.space4
        spacing: Theme.space2

        Button {
            focus: !preview.transfer.canImport
            text: "Cancel"
            shortcutText: "Esc"
            onClicked: preview.transfer.cancel()
        }

        Button {
            kind: Button.Prominent
            enabled: preview.transfer.canImport
            focus: preview.transfer.canImport
            text: "Import"
            onClicked: preview.transfer.confirmImport()
        }
    }
}
