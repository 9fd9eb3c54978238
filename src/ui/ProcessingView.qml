import QtQuick
import Velarc

// A run on its way.
Card {
    id: card

    readonly property HomePresenter presenter: Screens.home

    Item {
        width: parent.width
        implicitHeight: Math.max(texts.implicitHeight, spinner.implicitHeight)

        Spinner {
            id: spinner

            anchors.verticalCenter: parent.verticalCenter
            size: 28
        }

        Column {
            id: texts

            anchors.left: spinner.right
            anchors.leftMargin: Theme.space4
            anchors.right: running.left
            anchors.rightMargin: Theme.space3
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.space1

            Label {
                width: parent.width
                style: Label.CardTitle
                text: card.presenter.step
            }

            Label {
                width: parent.width
                visible: card.presenter.hasAction
                secondary: true
                text: "Action: " + card.presenter.actionName
                elide: Text.ElideMiddle
                wrapMode: Text.NoWrap
            }
        }

        Label {
            id: running

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            style: Label.Caption
            secondary: true
            font.weight: Font.DemiBold
            text: "Running"
        }
    }

    Button {
        symbol: "xmark.circle"
        text: "Cancel"
        shortcutText: "Escape"
        onClicked: card.presenter.cancel()
    }
}
