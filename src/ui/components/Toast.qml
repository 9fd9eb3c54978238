import QtQuick
import Velarc

// A message that floats over a screen while `text` is set, and is read out.
Item {
    id: toast

    property string text
    property string symbol: "checkmark.circle.fill"
    property color tint: Theme.success
    property string shownText // stays while it fades

    implicitWidth: row.implicitWidth + 2 * Theme.space4
    implicitHeight: Math.max(40, row.implicitHeight + 2 * Theme.space2)
    opacity: text === "" ? 0 : 1
    visible: opacity > 0
    onTextChanged: if (text !== "") {
        shownText = text;
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: shownText

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.gentle
        }
    }

    Glow {
        corner: 20
        blur: 14
        color: Theme.shadow
    }

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.popupGround
        border.color: Theme.hairline
        antialiasing: true
    }

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Theme.space2

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: toast.symbol
            color: toast.tint
            size: 20
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: toast.shownText
            color: Theme.text
            font.pixelSize: Theme.bodySize
            font.weight: Font.Medium
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
