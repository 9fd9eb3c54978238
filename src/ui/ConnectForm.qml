import QtQuick
import Velarc

// The key, what it is to be used for, and what came of it.
FocusScope {
    id: form

    readonly property ConnectPresenter presenter: Screens.connectSheet
    readonly property Item submitButton: submit
    readonly property Item errorCard: problem

    // The error card came, or became taller.
    signal errorShown

    implicitHeight: column.implicitHeight

    function clear() {
        field.clear();
    }

    function send() {
        presenter.submit(field);
    }

    Connections {
        target: form.presenter

        function onOpened() {
            form.clear();
        }
    }

    Column {
        id: column

        width: parent.width
        spacing: Theme.space3

        Label {
            width: parent.width
            font.weight: Font.DemiBold
            text: form.presenter.keyLabel
            Accessible.ignored: true
        }

        SecureField {
            id: field

            width: parent.width
            focus: true
            accessibleName: form.presenter.keyLabel
            onAccepted: form.send()
        }

        SwitchRow {
            width: parent.width
            title: "Use this provider for everything"
            isOn: form.presenter.useForEverything
            onToggled: form.presenter.toggleUseForEverything()
        }

        ConnectError {
            id: problem

            width: parent.width
            visible: form.presenter.hasError
            onYChanged: form.errorShown()
            onHeightChanged: form.errorShown()
            onVisibleChanged: form.errorShown()
        }

        Button {
            id: submit

            width: parent.width
            implicitHeight: Theme.controlHeight + Theme.space2
            kind: Button.Prominent
            enabled: !form.presenter.isConnecting
            accessibleName: form.presenter.isConnecting ? "Connecting..." : "Verify & Connect"
            onClicked: form.send()

            contentItem: Item {
                Row {
                    anchors.centerIn: parent
                    spacing: Theme.space2

                    Spinner {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: form.presenter.isConnecting
                        size: 18
                        color: Theme.textOnAccent
                    }

                    Text {
                        text: submit.accessibleName
                        color: Theme.textOnAccent
                        font: submit.font
                        textFormat: Text.PlainText
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
