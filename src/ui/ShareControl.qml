import QtQuick
import Velarc

// Hands the result on: to a file, to another program, to a mail.
Button {
    id: control

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
                onTriggered: Screens.share.saveAs()
            }

            ShareItem {
                isOffered: Screens.share.canShowInFolder
                text: "Show in Folder"
                symbol: "folder.fill"
                onTriggered: Screens.share.showInFolder()
            }

            ShareItem {
                isOffered: Screens.share.canOpen
                text: "Open with…"
                symbol: "square.grid.2x2"
                onTriggered: Screens.share.openWith()
            }

            ShareItem {
                isOffered: Screens.share.canMail
                text: "Send by mail…"
                symbol: "envelope"
                onTriggered: Screens.share.mail()
            }
        }
    }

    SheetSlot {
        presented: Screens.share.isSaveSheetPresented
        sheet: "SaveSheet"
        onDismissed: Screens.share.isSaveSheetPresented = false
    }
}
