import QtQuick
import Velarc

// Takes and verifies the key of an engine.
Sheet {
    id: sheet

    readonly property ConnectPresenter presenter: Screens.connectSheet

    title: presenter.title
    preferredWidth: 560
    onAboutToHide: form.clear()
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }

    ScrollArea {
        id: scroll

        anchors.fill: parent
        implicitHeight: contentHeight
        padding: Theme.space5
        topPadding: 2

        // Once the parts have come to their places.
        Timer {
            id: layOut

            interval: 0
            onTriggered: scroll.showError()
        }

        // The whole of it with the command below it; the start of one that is too tall.
        function showError() {
            if (form.errorCard.visible) {
                scroll.reveal(form.submitButton);
                const top = form.errorCard.mapToItem(scroll.contentItem, 0, 0).y - Theme.space2;
                scroll.contentY = Math.min(scroll.contentY, top);
            }
        }

        Column {
            width: parent.width
            spacing: Theme.space1

            Label {
                width: parent.width
                style: Label.CardTitle
                text: sheet.presenter.headline
            }

            Label {
                width: parent.width
                secondary: true
                text: sheet.presenter.introduction
            }
        }

        ConnectGuide {
            width: parent.width
        }

        ConnectForm {
            id: form

            width: parent.width
            focus: true
            onErrorShown: layOut.restart()
        }
    }
}
