import QtQuick
import Velarc

// The key, what it is to be used for, and what came of it.
FocusScope {
    id: form

    readonly property ConnectPresenter presenter: Screens.connectSheet
    readonly property Item lastPart: submit

    // It became taller.
    signal grown

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

        function onErrorTextChanged() {
            if (form.presenter.hasError) {
                Qt.callLater(form.grown);
            }
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
            width: parent.width
            visible: form.presenter.hasError
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
