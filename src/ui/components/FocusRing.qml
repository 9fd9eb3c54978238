import QtQuick
import Velarc

// Two pixels around what has the keyboard's focus, two pixels off.
Rectangle {
    property Item target: parent
    property bool shown: target.activeFocus
    property real targetRadius: Theme.controlRadius
    property int gap: 2

    anchors.fill: target
    anchors.margins: -gap - border.width
    visible: shown
    z: 1
    radius: targetRadius + gap + border.width
    color: "transparent"
    border.width: 2
    border.color: Theme.focusRing
}
