import QtQuick
import Velarc

// The Engine Room over the main window.
Sheet {
    id: sheet

    preferredWidth: 760
    preferredHeight: 640
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }

    EngineRoom {
        anchors.fill: parent
    }
}
