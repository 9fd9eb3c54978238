import QtQuick
import Velarc

// At the foot of the library: what came of an export or import, and the way to take a deletion back.
Column {
    id: notices

    readonly property LibraryPresenter presenter: Screens.library
    readonly property TransferPresenter transfer: Screens.transfer

    Notice {
        width: parent.width
        text: notices.transfer.message
        isFailure: notices.transfer.isFailure
        command: "Dismiss"
        onPressed: notices.transfer.dismissMessage()
    }

    Notice {
        width: parent.width
        text: notices.presenter.deletionNotice
        command: "Undo"
        shortcutText: "Ctrl+Z"
        onPressed: notices.presenter.undoRemove()
    }
}
