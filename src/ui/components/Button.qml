import QtQuick
import QtQuick.Templates as T
import Velarc

// A command. One prominent button at most stands on a screen.
T.Button {
    id: button

    enum Kind {
        Bordered,
        Prominent,
        Plain
    }

    property int kind: Button.Bordered
    property string symbol
    property string tip
    property string shortcutText
    property color tint: Theme.accent
    property color foreground: kind === Button.Prominent ? Theme.textOnAccent : Theme.text
    property bool iconOnly: false
    property string accessibleName: text
    readonly property bool showsFocus: visualFocus

    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    implicitWidth: Math.max(Theme.hitArea, implicitContentWidth + leftPadding + rightPadding)
    leftPadding: iconOnly ? Theme.space2 : kind === Button.Plain ? Theme.space2 : Theme.space3 + 2
    rightPadding: leftPadding
    topPadding: Theme.space1 + 2
    bottomPadding: topPadding
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    font.pixelSize: Theme.bodySize
    font.weight: kind === Button.Prominent ? Font.DemiBold : Font.Medium
    opacity: enabled ? 1 : 0.5

    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.description: shortcutText
    Accessible.onPressAction: button.clicked()

    contentItem: IconLabel {
        symbol: button.symbol
        text: button.iconOnly ? "" : button.text
        color: button.foreground
        font: button.font
    }

    background: Rectangle {
        readonly property color rest: button.kind === Button.Prominent ? button.tint
            : button.kind === Button.Bordered ? Theme.control : "transparent"
        readonly property color over: button.kind === Button.Prominent ? Qt.lighter(button.tint, 1.08)
            : button.kind === Button.Bordered ? Theme.controlHover : Theme.hover
        readonly property color under: button.kind === Button.Prominent ? Qt.darker(button.tint, 1.18)
            : button.kind === Button.Bordered ? Theme.controlPressed : Theme.pressed

        radius: Theme.controlRadius
        color: button.down ? under : button.hovered && button.enabled ? over : rest
        border.width: button.kind === Button.Bordered ? 1 : 0
        border.color: Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: button.showsFocus
        }
    }

    TipLoader {
        control: button
        text: button.tip
        shortcutText: button.shortcutText
    }
}
