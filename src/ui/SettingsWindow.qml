import QtQuick
import QtQuick.Window
import Velarc

// The settings in a window of their own, beside the main one.
Window {
    id: window

    width: 760
    height: 680
    minimumWidth: 760
    minimumHeight: 620
    visible: true
    title: "Settings"
    color: Theme.sheetGround
    onClosing: Screens.shell.isSettingsPresented = false

    EngineRoom {
        anchors.fill: parent
        focus: true
    }

    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: window.close()
    }
}
