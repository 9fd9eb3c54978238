import QtQuick
import Velarc

// The canvas: an action to run, the input that it runs on, and what came of it. A press on a command
// leaves the keyboard to the editor.
FocusScope {
    id: home

    readonly property HomePresenter presenter: Screens.home

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.canvasGradient[0]
            }
            GradientStop {
                position: 0.5
                color: Theme.canvasGradient[1]
            }
            GradientStop {
                position: 1
                color: Theme.canvasGradient[2]
            }
        }
    }

    DropArea {
        anchors.fill: parent
        onEntered: drag => {
            drag.accepted = drag.hasUrls || drag.hasText;
            Screens.canvas.isDropTargeted = drag.hasUrls;
        }
        onExited: Screens.canvas.isDropTargeted = false
        onDropped: drop => {
            Screens.canvas.isDropTargeted = false;
            drop.accept(Qt.CopyAction);
            if (drop.hasUrls) {
                Screens.canvas.dropFiles(drop.urls);
            } else {
                Screens.canvas.dropText(drop.text);
            }
        }
    }

    Item {
        id: toolbar

        width: parent.width
        height: 48

        Wordmark {
            anchors.centerIn: parent
        }
    }

    HomeTopBar {
        id: topBar

        anchors.top: toolbar.bottom
        anchors.topMargin: Theme.space4
        x: Math.round((home.width - width) / 2)
        width: Math.min(Theme.contentWidth, home.width - 2 * Theme.space5)
    }

    ScrollArea {
        id: scroll

        anchors.top: topBar.bottom
        anchors.topMargin: Theme.space3
        anchors.bottom: parent.bottom
        anchors.bottomMargin: noteText.text === "" ? 0 : note.height
        anchors.left: parent.left
        anchors.right: parent.right
        padding: Theme.space5
        topPadding: Theme.space1
        bottomPadding: Math.max(Theme.space2, 30 - anchors.bottomMargin) // a note moves nothing
        maximumContentWidth: Theme.contentWidth

        Loader {
            id: phase

            readonly property InputView inputView: item as InputView

            width: parent.width
            // The files of the later phases are not read at the start.
            source: ["InputView.qml", "ProcessingView.qml", "OutputView.qml"][home.presenter.phase]
        }

        Binding {
            target: phase.inputView
            when: phase.inputView !== null
            property: "availableHeight"
            value: scroll.availableHeight
        }
    }

    Item {
        id: note

        anchors.bottom: parent.bottom
        x: Math.round((home.width - width) / 2)
        width: Math.min(Theme.contentWidth, home.width - 2 * Theme.space5)
        height: Math.max(30 - Theme.space2, noteText.implicitHeight + Theme.space1)

        Label {
            id: noteText

            width: parent.width
            visible: text !== ""
            style: Label.Caption
            secondary: true
            text: home.presenter.statusNote
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            Accessible.role: Accessible.AlertMessage

            // What appears is read out: so it goes and comes again for each text.
            onTextChanged: {
                visible = false;
                visible = noteText.text !== "";
            }

            HoverHandler {
                id: pointer
            }

            // qmllint disable unqualified
            Loader {
                anchors.fill: parent
                active: noteText.truncated
                sourceComponent: Tip {
                    text: noteText.text
                    wanted: pointer.hovered
                }
            }
            // qmllint enable unqualified
        }
    }

    Toast {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 48
        text: home.presenter.toast
    }
}
