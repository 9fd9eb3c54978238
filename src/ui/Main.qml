import QtQuick
import QtQuick.Window
import Velarc

// The main window.
Window {
    id: window

    // The size to open with.
    property size startSize: Qt.size(1200, 820)

    width: startSize.width
    height: startSize.height
    minimumWidth: 560
    minimumHeight: 400
    title: "Velarc"
    color: Theme.canvasGradient[0]

    Shell {
        anchors.fill: parent
        focus: true
    }

    Loader {
        active: Screens.shell.isSettingsPresented
        source: "SettingsWindow.qml"
    }
}
