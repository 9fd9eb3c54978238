import QtQuick
import Velarc

// Hands the result on: to a file, to another program, to a mail.
Button {
    id: control

    readonly property SharePresenter presenter: Screens.share

    symbol: "square.and.arrow.up"
    text: "Share"
    Accessible.role: Accessible.ButtonMenu
    onClicked: {
        menu.active = true;
        (menu.item as Menu).popup(control, 0, control.height + Theme.space1);
    }

    Loader {
        id: menu

        active: false
        sourceComponent: Menu {
            ShareItem {
                text: "Copy"
                symbol: "doc.on.doc"
                onTriggered: Screens.result.copy()
            }

            ShareItem {
                text: "Save as…"
                symbol: "folder"
                onTriggered: control.presenter.saveAs()
            }

            ShareItem {
                isOffered: control.presenter.canShowInFolder
                text: "Show in Folder"
                symbol: "folder.fill"
                onTriggered: control.presenter.showInFolder()
            }

            ShareItem {
                isOffered: control.presenter.canOpen
                text: "Open with…"
                symbol: "square.grid.2x2"
                onTriggered: control.presenter.openWith()
            }

            ShareItem {
                isOffered: control.presenter.canMail
                text: "Send by mail…"
                symbol: "envelope"
                onTriggered: control.presenter.mail()
            }
        }
    }

    SheetSlot {
        presented: control.presenter.isSaveSheetPresented
        sheet: Component {
            SaveSheet {}
        }
        onDismissed: control.presenter.isSaveSheetPresented = false
    }
}
