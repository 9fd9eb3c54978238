import QtQuick
import Velarc

// A result: its header, the result itself, what can be done with it, and how it came about.
Column {
    id: view

    readonly property ResultPresenter presenter: Screens.result
    readonly property bool isText: presenter.body === ResultPresenter.Text

    spacing: Theme.space4

    Item {
        width: parent.width
        implicitHeight: Math.max(title.implicitHeight, toggles.implicitHeight)

        Label {
            id: title

            anchors.left: parent.left
            anchors.right: toggles.left
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: "Result"
        }

        Row {
            id: toggles

            anchors.right: parent.right
            spacing: Theme.space1

            Button {
                visible: view.presenter.hasDebugInfo
                kind: Button.Plain
                foreground: Theme.accentText
                text: view.presenter.isDetailsExpanded ? "Hide Details" : "Details"
                onClicked: view.presenter.isDetailsExpanded = !view.presenter.isDetailsExpanded
            }

            Button {
                kind: Button.Plain
                foreground: Theme.accentText
                text: view.presenter.isExpanded ? "Collapse" : "Expand"
                onClicked: view.presenter.isExpanded = !view.presenter.isExpanded
            }
        }
    }

    Loader {
        width: parent.width
        sourceComponent: [text, picture, pdf][view.presenter.body]
    }

    Flow {
        width: parent.width
        spacing: Theme.space2

        Button {
            symbol: "doc.on.doc"
            text: "Copy"
            onClicked: view.presenter.copy()
        }

        ShareControl {
            visible: Screens.share.isOffered
        }

        Button {
            text: "Restart"
            onClicked: view.presenter.restart()
        }
    }

    Label {
        width: parent.width
        visible: Screens.share.notice !== "" // `text` is the component below
        style: Label.Caption
        secondary: true
        text: Screens.share.notice
    }

    Loader {
        width: parent.width
        active: view.presenter.isDetailsExpanded && view.presenter.hasDebugInfo
        visible: active
        sourceComponent: DebugDetails {}
    }

    Loader {
        width: parent.width
        active: view.presenter.isExpanded && view.isText
        visible: active
        sourceComponent: RefineBox {}
    }

    Component {
        id: text

        ReadingText {
            text: Screens.result.text
            lineLimit: Screens.result.isExpanded ? 0 : 6
        }
    }

    Component {
        id: picture

        ResultPicture {}
    }

    Component {
        id: pdf

        ResultPdf {}
    }
}
