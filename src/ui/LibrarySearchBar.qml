import QtQuick
import Velarc

// The search of the library, and the two commands beside it.
FocusScope {
    id: bar

    readonly property LibraryPresenter presenter: Screens.library
    readonly property TransferPresenter transfer: Screens.transfer

    signal leftDownwards
    signal chosen

    implicitHeight: field.implicitHeight

    function takeFocus() {
        field.forceActiveFocus(Qt.TabFocusReason);
    }

    TextField {
        id: field

        anchors.left: parent.left
        anchors.leftMargin: Theme.space5
        anchors.right: commands.left
        anchors.rightMargin: Theme.space2
        leftPadding: Theme.space8
        focus: true
        placeholderText: "Search actions"
        text: bar.presenter.query
        onTextEdited: bar.presenter.query = text
        // While a deletion can be taken back, that goes before the last edit of the search.
        Keys.onPressed: event => {
            if (event.matches(StandardKey.Undo) && bar.presenter.deletionNotice !== "") {
                event.accepted = true;
                bar.presenter.undoRemove();
            }
        }
        Keys.onDownPressed: bar.leftDownwards()
        Keys.onReturnPressed: bar.chosen()
        Keys.onEnterPressed: bar.chosen()

        Icon {
            x: Theme.space2
            anchors.verticalCenter: parent.verticalCenter
            symbol: "magnifyingglass"
            color: Theme.secondaryText
        }
    }

    Row {
        id: commands

        anchors.right: parent.right
        anchors.rightMargin: Theme.space5
        spacing: Theme.space2

        Button {
            text: "Import"
            tip: "Import actions from a file"
            onClicked: bar.transfer.importFile()
        }

        Button {
            id: exporting

            text: "Export"
            tip: "Export actions to a file"
            onClicked: menu.open()

            Menu {
                id: menu

                y: exporting.height + Theme.space1
                x: exporting.width - width

                MenuItem {
                    text: "All Actions\u2026"
                    onTriggered: bar.transfer.exportAll()
                }

                MenuItem {
                    text: "One Action\u2026"
                    onTriggered: bar.transfer.chooseActionToExport()
                }
            }
        }
    }
}
