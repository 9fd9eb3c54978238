import QtQuick
import Velarc

// Offers to connect the engine that the last run missed.
Rectangle {
    id: banner

    readonly property HomePresenter presenter: Screens.home

    implicitHeight: Math.max(message.implicitHeight, connect.implicitHeight) + 2 * Theme.space3
    radius: Theme.chipRadius
    color: Theme.warningFill
    border.color: Theme.warningStroke
    antialiasing: true

    Label {
        id: message

        anchors.left: parent.left
        anchors.leftMargin: Theme.space4
        anchors.right: connect.left
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.warningText
        text: "Connect " + banner.presenter.suggestedEngine + " to run this action."
    }

    Button {
        id: connect

        anchors.right: parent.right
        anchors.rightMargin: Theme.space3
        anchors.verticalCenter: parent.verticalCenter
        kind: Button.Prominent
        tint: Theme.warningAction
        foreground: Theme.textOnWarning
        text: "Connect " + banner.presenter.suggestedEngine
        onClicked: banner.presenter.connectSuggestedEngine()
    }
}
