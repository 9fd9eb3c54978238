import QtQuick
import Velarc

// Under the search: what an export or import that goes on wants to know, or how to end it.
Item {
    id: pane

    readonly property TransferPresenter transfer: Screens.transfer
    readonly property int stage: transfer.stage

    // The focus that stood in it has nowhere to stand.
    signal ended

    implicitHeight: loader.active ? loader.implicitHeight + Theme.space3 : 0

    Loader {
        id: loader

        x: Theme.space5
        y: Theme.space3
        width: pane.width - 2 * Theme.space5
        active: pane.stage === TransferPresenter.ChoosingAction
            || pane.stage === TransferPresenter.AskingPath || pane.stage === TransferPresenter.Working
        sourceComponent: pane.stage === TransferPresenter.AskingPath ? askingPath
            : pane.stage === TransferPresenter.Working ? working : choosing
        onLoaded: (item as Item).forceActiveFocus()
        onActiveChanged: if (!active) {
            pane.ended();
        }
    }

    Component {
        id: choosing

        LibraryPaneLine {
            text: "Choose the action to export."
        }
    }

    Component {
        id: working

        LibraryPaneLine {
            text: "Working on the file\u2026"
            isBusy: true
        }
    }

    Component {
        id: askingPath

        LibraryPathForm {}
    }
}
