import QtQuick
import QtQuick.Templates as T
import Velarc

T.ScrollBar {
    id: bar

    implicitWidth: 10
    implicitHeight: 10
    padding: 2
    minimumSize: 0.08
    visible: size < 1 && policy !== T.ScrollBar.AlwaysOff
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.text
        opacity: bar.pressed ? 0.45 : bar.hovered ? 0.35 : bar.active ? 0.25 : 0.14

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.quick
            }
        }
    }
}
