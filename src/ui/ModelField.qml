import QtQuick
import Velarc

// The identifier of the default model. What is typed is stored as it is typed; while the keyboard is
// here the text stays as the user left it, and then it shows what is stored.
TextField {
    id: field

    property EngineRoomPresenter presenter: Screens.engineRoom(field)

    placeholderText: "Custom model ID"
    inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
    onTextEdited: presenter.modelID = text
    onActiveFocusChanged: show()
    onAccepted: text = presenter.modelID
    Component.onCompleted: show()

    function show() {
        if (!activeFocus) {
            text = presenter.modelID;
        }
    }

    Connections {
        target: field.presenter

        function onSettingsChanged() {
            field.show();
        }
    }
}
