import QtQuick
import Velarc

// What a run came to, and the way back.
Column {
    id: view

    readonly property HomePresenter presenter: Screens.home

    spacing: Theme.space4

    Row {
        spacing: Theme.space2

        Button {
            symbol: "chevron.left"
            text: "Back"
            onClicked: view.presenter.back()
        }

        Button {
            kind: Button.Prominent
            symbol: "arrow.clockwise"
            text: "Run Again"
            shortcutText: "Ctrl+Return"
            onClicked: view.presenter.run()
        }
    }

    ResultPanel {
        width: parent.width
    }
}
