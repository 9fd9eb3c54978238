import QtQuick
import Velarc

// What a run has left to see: a result with its commands, or an error with its remedies.
Card {
    id: panel

    readonly property ResultPresenter presenter: Screens.result

    Loader {
        width: parent.width
        sourceComponent: [ready, processing, result, error][panel.presenter.display]

        // Here it takes no place of its own.
        Announcer {
            text: panel.presenter.announcement
        }
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

        Item {
            implicitHeight: Math.max(spinner.implicitHeight, steps.implicitHeight)

            Spinner {
                id: spinner

                anchors.verticalCenter: parent.verticalCenter
            }

            Column {
                id: steps

                anchors.left: spinner.right
                anchors.leftMargin: Theme.space4
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.space1

                Label {
                    width: parent.width
                    style: Label.CardTitle
                    text: "Processing"
                }

                Label {
                    width: parent.width
                    secondary: true
                    text: Screens.result.step
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
