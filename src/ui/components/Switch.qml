import QtQuick
import QtQuick.Templates as T
import Velarc

// On or off. Whoever owns `checked` changes it when it is toggled. Assistive programs know it as a
// check box.
T.CheckBox {
    id: control

    nextCheckState: () => checkState // a press changes nothing by itself
    implicitWidth: 44
    implicitHeight: Theme.hitArea
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    Keys.onReturnPressed: control.clicked()
    Accessible.name: text
    Accessible.onPressAction: control.clicked()
    Accessible.onToggleAction: control.clicked()

    indicator: Rectangle {
        y: Math.round((control.height - height) / 2)
        width: 40
        height: 24
        radius: 12
        color: control.checked ? (control.hovered ? Qt.lighter(Theme.accent, 1.08) : Theme.accent)
            : control.hovered ? Theme.controlPressed : (Theme.dark ? "#3A3946" : "#D4D4DE")
        antialiasing: true

        Rectangle {
            x: control.checked ? parent.width - width - 3 : 3
            y: 3
            width: 18
            height: 18
            radius: 9
            color: "#FFFFFF"
            antialiasing: true

            Behavior on x {
                NumberAnimation {
                    duration: Theme.quick
                    easing.type: Easing.OutQuad
                }
            }
        }

        FocusRing {
            shown: control.visualFocus
            targetRadius: 12
        }
    }
}
