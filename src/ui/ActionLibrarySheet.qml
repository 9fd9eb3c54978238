import QtQuick
import Velarc

// All actions, to find and manage, to export and to import.
Sheet {
    id: sheet

    readonly property LibraryPresenter presenter: Screens.library
    readonly property TransferPresenter transfer: Screens.transfer
    readonly property bool isPreviewing: transfer.stage === TransferPresenter.Previewing

    title: "Manage Actions"
    preferredWidth: 580
    preferredHeight: 680
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        // Escape leaves what goes on before it closes the sheet.
        Keys.onShortcutOverride: event => event.accepted = event.key === Qt.Key_Escape
            && sheet.transfer.stage !== TransferPresenter.Idle
        Keys.onEscapePressed: event => {
            event.accepted = sheet.transfer.stage !== TransferPresenter.Idle;
            if (event.accepted) {
                sheet.transfer.cancel();
            }
        }
        Keys.onPressed: event => {
            if (event.matches(StandardKey.Undo) && sheet.presenter.deletionNotice !== "") {
                event.accepted = true;
                sheet.presenter.undoRemove();
            }
        }

        LibrarySearchBar {
            id: bar

            visible: !sheet.isPreviewing
            width: parent.width
            focus: true
            onLeftDownwards: list.enter()
            onChosen: list.chooseFirst()
        }

        LibraryTransferPane {
            id: pane

            anchors.top: bar.bottom
            width: parent.width
            visible: !sheet.isPreviewing
            onEnded: if (sheet.transfer.stage !== TransferPresenter.Previewing) {
                bar.takeFocus();
            }
        }

        LibraryList {
            id: list

            anchors.top: pane.bottom
            anchors.topMargin: Theme.space2
            anchors.bottom: notices.top
            anchors.bottomMargin: notices.height > 0 ? 0 : Theme.space2
            width: parent.width
            visible: !sheet.isPreviewing
            onLeftUpwards: bar.takeFocus()
        }

        Loader {
            anchors.top: parent.top
            anchors.bottom: notices.top
            width: parent.width
            active: sheet.isPreviewing
            sourceComponent: Component {
                ImportPreview {}
            }
            onLoaded: (item as Item).forceActiveFocus()
            onActiveChanged: if (!active) {
                bar.takeFocus();
            }
        }

        LibraryNotices {
            id: notices

            anchors.bottom: parent.bottom
            width: parent.width
        }

        DropArea {
            id: drop

            anchors.fill: parent
            keys: ["text/uri-list"]
            onDropped: event => {
                event.accept(Qt.CopyAction);
                sheet.transfer.importDropped(event.urls);
            }

            Rectangle {
                anchors.fill: parent
                anchors.margins: Theme.space2
                visible: drop.containsDrag
                radius: Theme.cardRadius
                color: Theme.withOpacity(Theme.accent, 0.10)
                border.width: 2
                border.color: Theme.inputBorderDropTargeted

                Label {
                    anchors.centerIn: parent
                    style: Label.CardTitle
                    text: "Drop to import actions"
                }
            }
        }
    }
}
