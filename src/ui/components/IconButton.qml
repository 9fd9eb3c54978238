import QtQuick
import Velarc

// A command without a visible label: its tip is its name.
Button {
    kind: Button.Plain
    iconOnly: true
    accessibleName: tip
    foreground: Theme.secondaryText
    leftPadding: (Theme.controlHeight - Theme.symbolSize) / 2
}
