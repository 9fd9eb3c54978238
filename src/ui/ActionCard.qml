import QtQuick
import QtQuick.Templates as T
import Velarc

// The action that Run runs. A press opens the library.
Card {
    id: card

    readonly property HomePresenter presenter: Screens.home

    spacing: Theme.space1

    Item {
        width: parent.width
        implicitHeight: all.implicitHeight

        SectionHeader {
            anchors.verticalCenter: parent.verticalCenter
            text: "Action"
        }

        Button {
            id: all

            anchors.right: parent.right
            kind: Button.Plain
            foreground: Theme.accentText
            text: "All Actions"
            focusPolicy: Qt.TabFocus
            onClicked: card.presenter.openActionLibrary()
        }
    }

    T.AbstractButton {
        id: row

        width: parent.width
        implicitHeight: Math.max(48, texts.implicitHeight + 2 * Theme.space2)
        leftPadding: Theme.space2
        rightPadding: Theme.space2
        hoverEnabled: true
        focusPolicy: Qt.TabFocus
        text: card.presenter.hasAction ? card.presenter.actionName : "Select an action"
        onClicked: card.presenter.openActionLibrary()
        Keys.onReturnPressed: row.clicked()
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.description: card.presenter.actionSummary
        Accessible.onPressAction: row.clicked()

        contentItem: Item {
            IconTile {
                id: tile

                visible: card.presenter.hasAction
                anchors.verticalCenter: parent.verticalCenter
                symbol: card.presenter.actionSymbol
                tint: card.presenter.actionColorHex
            }

            Column {
                id: texts

                anchors.left: tile.visible ? tile.right : parent.left
                anchors.leftMargin: tile.visible ? Theme.space3 : 0
                anchors.right: chevron.left
                anchors.rightMargin: Theme.space2
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Text {
                    width: parent.width
                    text: row.text
                    color: card.presenter.hasAction ? Theme.text : Theme.secondaryText
                    font.pixelSize: Theme.cardTitleSize
                    font.weight: Font.DemiBold
                    elide: Text.ElideMiddle
                    horizontalAlignment: Text.AlignLeft
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }

                Label {
                    width: parent.width
                    visible: card.presenter.hasAction
                    style: Label.Caption
                    secondary: true
                    text: card.presenter.actionSummary
                    elide: Text.ElideRight
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
            }

            Icon {
                id: chevron

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: "chevron.right"
                color: Theme.secondaryText
            }
        }

        background: Rectangle {
            radius: Theme.controlRadius
            color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"

            FocusRing {
                shown: row.visualFocus
            }
        }
    }
}
