import QtQuick
import Velarc

// A run that failed: what happened, and what can be done about it.
Column {
    id: view

    readonly property ResultPresenter presenter: Screens.result

    spacing: Theme.space3

    Row {
        width: parent.width
        spacing: Theme.space2

        Icon {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.triangle.fill"
            size: Math.round(Theme.symbolSize * 1.125)
            color: Theme.issueText
        }

        Label {
            width: parent.width - mark.width - parent.spacing
            style: Label.CardTitle
            text: "Error"
        }
    }

    Label {
        id: headline

        width: parent.width
        text: view.presenter.errorMessage
        elide: Text.ElideRight
        wrapMode: Text.NoWrap

        HoverHandler {
            id: pointer
        }

        Tip {
            text: headline.truncated ? headline.text : ""
            wanted: pointer.hovered
        }
    }

    Disclosure {
        width: parent.width
        visible: view.presenter.technical !== ""
        title: "Technical details"
        isOpen: view.presenter.isTechnicalExpanded
        onToggled: view.presenter.isTechnicalExpanded = !view.presenter.isTechnicalExpanded

        Column {
            spacing: Theme.space3

            TextPane {
                width: parent.width
                maximumHeight: 220
                accessibleName: "Technical details"
                text: Screens.result.technical
            }

            Button {
                symbol: "doc.on.doc"
                text: "Copy Details"
                onClicked: Screens.result.copyText(Screens.result.technical)
            }
        }
    }

    Flow {
        width: parent.width
        spacing: Theme.space2

        Button {
            symbol: "arrow.clockwise"
            text: "Retry"
            onClicked: view.presenter.retry()
        }

        Button {
            visible: view.presenter.suggestedEngine !== ""
            symbol: "key.fill"
            foreground: Theme.accentText
            text: "Connect " + view.presenter.suggestedEngine
            onClicked: view.presenter.connectSuggestedEngine()
        }

        Button {
            text: "Restart"
            onClicked: view.presenter.restart()
        }
    }
}
