import QtQuick
import Velarc

// Up to four actions at hand.
Column {
    id: strip

    readonly property HomePresenter presenter: Screens.home

    spacing: Theme.space2

    Item {
        width: parent.width
        implicitHeight: all.implicitHeight

        Label {
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Quick Actions"
        }

        Button {
            id: all

            anchors.right: parent.right
            kind: Button.Plain
            foreground: Theme.accentText
            text: "All Actions"
            focusPolicy: Qt.TabFocus
            onClicked: strip.presenter.openActionLibrary()
        }
    }

    Flow {
        width: parent.width
        spacing: Theme.space2

        Repeater {
            model: strip.presenter.strip

            Chip {
                required property string actionID
                required property string name
                required property string colorHex
                required symbol
                required isSelected

                width: Math.min(implicitWidth, (parent as Flow)?.width ?? 280, 280)
                text: name
                focusPolicy: Qt.TabFocus
                symbolColor: colorHex
                onClicked: Screens.home.selectAction(actionID)
            }
        }
    }
}
