import QtQuick
import Velarc

// What the engine is doing, and the ways to the rest of the program.
Item {
    id: bar

    readonly property HomePresenter presenter: Screens.home

    implicitHeight: Math.max(commands.implicitHeight, pill.height)

    Row {
        id: commands

        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.space1

        IconButton {
            symbol: "square.grid.2x2"
            tip: "Actions"
            focusPolicy: Qt.TabFocus
            shortcutText: "Ctrl+K"
            onClicked: bar.presenter.openActionLibrary()
        }

        IconButton {
            symbol: "gearshape.2"
            tip: "Engine Room"
            focusPolicy: Qt.TabFocus
            onClicked: bar.presenter.openEngineRoom()
        }

        IconButton {
            symbol: "ellipsis.circle"
            tip: "More"
            focusPolicy: Qt.TabFocus
            onClicked: bar.presenter.openMoreSheet()
        }
    }

    StatusPill {
        id: pill

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, bar.width - commands.width - Theme.space3)
        text: bar.presenter.pillText
        dot: [Theme.accent, Theme.warningStroke, Theme.success, Theme.issue][bar.presenter.status]
    }
}
