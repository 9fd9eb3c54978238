import QtQuick
import Velarc

// The Engine Room over the main window.
Sheet {
    id: sheet

    preferredWidth: 760
    preferredHeight: 680
    accessibleName: "Engine Room"
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }

    EngineRoom {
        anchors.fill: parent
        focus: true
    }
}
