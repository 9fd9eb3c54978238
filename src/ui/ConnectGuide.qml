import QtQuick
import Velarc

// How to come by a key.
Card {
    id: card

    readonly property ConnectPresenter presenter: Screens.connectSheet

    Label {
        width: parent.width
        style: Label.CardTitle
        text: "Guided Setup"
    }

    Label {
        width: parent.width
        lineHeight: Theme.readingLineHeight
        text: card.presenter.guide
    }

    Flow {
        width: parent.width
        spacing: Theme.space2

        Button {
            symbol: "globe"
            text: "Open Key Page"
            onClicked: card.presenter.openKeyPage()
        }

        CopyButton {
            text: "Copy URL"
            onClicked: card.presenter.copyURL()
        }
    }

    Label {
        width: parent.width
        visible: text !== ""
        color: Theme.issueText
        wrapMode: Text.Wrap
        text: card.presenter.pageNotice
    }

    Label {
        width: parent.width
        style: Label.Caption
        secondary: true
        wrapMode: Text.Wrap
        text: card.presenter.modelLine
    }
}
