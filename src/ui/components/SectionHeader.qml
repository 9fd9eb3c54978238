import QtQuick
import Velarc

// The heading of a group of rows.
Label {
    style: Label.Caption
    secondary: true
    font.weight: Font.DemiBold
    elide: Text.ElideRight
    wrapMode: Text.NoWrap
    Accessible.role: Accessible.Heading
}
