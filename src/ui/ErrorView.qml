import QtQuick
import Velarc

// A run that failed: what happened, and what can be done about it.
Column {
    id: view

    readonly property ResultPresenter presenter: Screens.result

    spacing: Theme.space3

    Item {
        width: parent.width
        implicitHeight: Math.max(title.implicitHeight, toggle.visible ? toggle.implicitHeight : 0)

        Icon {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.triangle.fill"
            size: Math.round(Theme.symbolSize * 1.125)
            color: Theme.issueText
        }

        Label {
            id: title

            anchors.left: mark.right
            anchors.leftMargin: Theme.space2
            anchors.right: toggle.left
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Error"
        }

        Button {
            id: toggle

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: message.isCut || view.presenter.isExpanded
            kind: Button.Plain
            foreground: Theme.accentText
            text: view.presenter.isExpanded ? "Collapse" : "Expand"
            onClicked: view.presenter.isExpanded = !view.presenter.isExpanded
        }
    }

    ReadingText {
        id: message

        width: parent.width
        text: view.presenter.errorMessage
        lineLimit: view.presenter.isExpanded ? 0 : 8
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
