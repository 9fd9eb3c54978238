import QtQuick
import Velarc

// Why the engine is not connected, word for word.
Rectangle {
    id: card

    readonly property ConnectPresenter presenter: Screens.connectSheet

    implicitHeight: column.implicitHeight + 2 * Theme.space4
    radius: Theme.cardRadius
    color: Theme.withOpacity(Theme.issue, Theme.dark ? 0.12 : 0.07)
    border.color: Theme.withOpacity(Theme.issue, 0.45)
    antialiasing: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: "Connection error"

    Column {
        id: column

        x: Theme.space4
        y: Theme.space4
        width: parent.width - 2 * Theme.space4
        spacing: Theme.space3

        Row {
            width: parent.width
            spacing: Theme.space2

            Icon {
                id: sign

                anchors.verticalCenter: parent.verticalCenter
                symbol: "exclamationmark.triangle.fill"
                color: Theme.issueText
            }

            Label {
                width: parent.width - sign.width - parent.spacing
                style: Label.CardTitle
                color: Theme.issueText
                text: "Connection error"
            }
        }

        TextEdit {
            id: detail

            width: parent.width
            text: card.presenter.errorText
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            readOnly: true
            selectByMouse: true
            selectByKeyboard: true
            activeFocusOnTab: true
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.textOnAccent
            font.pixelSize: Theme.bodySize
            Accessible.role: Accessible.StaticText
            Accessible.name: text

            FocusRing {
                shown: detail.activeFocus
                targetRadius: 4
            }
        }

        Flow {
            width: parent.width
            spacing: Theme.space2

            CopyButton {
                text: "Copy Error"
                onClicked: card.presenter.copyError()
            }

            Button {
                symbol: "globe"
                text: "Open Key Page"
                onClicked: card.presenter.openKeyPage()
            }
        }
    }
}
