import QtQuick
import QtQuick.Templates as T
import Velarc

// A small pill that is pressed, or selected.
T.AbstractButton {
    id: chip

    property string symbol
    property color symbolColor: Theme.accent
    property bool isSelected: false

    implicitHeight: Math.max(Theme.hitArea, implicitContentHeight + Theme.space2)
    implicitWidth: implicitContentWidth + 2 * Theme.space3
    leftPadding: Theme.space3
    rightPadding: Theme.space3
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.5
    Keys.onReturnPressed: chip.clicked()
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: chip.clicked()

    contentItem: IconLabel {
        symbol: chip.symbol
        symbolColor: Theme.symbolColor(chip.symbolColor)
        text: chip.text
        font.pixelSize: Theme.bodySize
        font.weight: chip.isSelected ? Font.DemiBold : Font.Normal
        elide: Text.ElideMiddle
    }

    background: Rectangle {
        radius: height / 2
        color: chip.isSelected ? Theme.selection
            : chip.down ? Theme.controlPressed : chip.hovered ? Theme.controlHover : Theme.control
        border.width: 1
        border.color: chip.isSelected ? Theme.accent : Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: chip.visualFocus
            targetRadius: chip.height / 2
        }
    }

    TipLoader {
        control: chip
        text: chip.text
    }
}
