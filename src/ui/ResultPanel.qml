import Velarc

// What a run has left to see: a result with its commands, or an error with its remedies.
Card {
    id: panel

    readonly property ResultPresenter presenter: Screens.result

    Announcer {
        text: panel.presenter.announcement
    }

    Loader {
        width: parent.width
        sourceComponent: [ready, processing, result, error][panel.presenter.display]
    }

    Component {
        id: ready

        Column {
            spacing: Theme.space2

            Label {
                width: parent.width
                style: Label.CardTitle
                text: "Result"
            }

            Label {
                width: parent.width
                secondary: true
                text: "Choose an action and tap Run."
            }
        }
    }

    Component {
        id: processing

        Row {
            spacing: Theme.space4

            Spinner {
                id: spinner

                anchors.verticalCenter: parent.verticalCenter
            }

            Column {
                width: parent.width - spinner.width - parent.spacing
                spacing: Theme.space1

                Label {
                    width: parent.width
                    style: Label.CardTitle
                    text: "Processing"
                }

                Label {
                    width: parent.width
                    secondary: true
                    text: panel.presenter.step
                }
            }
        }
    }

    Component {
        id: result

        ResultView {}
    }

    Component {
        id: error

        ErrorView {}
    }
}
