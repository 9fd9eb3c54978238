import QtQuick
import Velarc

// Work is going on. Where the desktop wants no motion it stands still.
Item {
    id: spinner

    property int size: 22
    property color color: Theme.accent
    property bool running: visible

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.Indicator
    Accessible.name: "In progress"

    // qmllint disable unqualified
    Repeater {
        model: 8

        Rectangle {
            required property int index
            readonly property real angle: index * Math.PI / 4

            x: spinner.width / 2 + Math.sin(angle) * spinner.size * 0.38 - width / 2
            y: spinner.height / 2 - Math.cos(angle) * spinner.size * 0.38 - height / 2
            width: spinner.size * 0.17
            height: width
            radius: width / 2
            color: spinner.color
            opacity: 0.2 + 0.8 * ((index - timer.head + 8) % 8) / 7
            antialiasing: true
        }
    }
    // qmllint enable unqualified

    Timer {
        id: timer

        property int head: 0

        interval: 100
        repeat: true
        running: spinner.running && spinner.visible && Theme.gentle > 0
        onTriggered: head = (head + 1) % 8
    }
}
