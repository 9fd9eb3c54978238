import QtQuick
import Velarc

// One sum of today's tokens.
Card {
    id: tile

    property string title
    property string figure

    padding: Theme.space3
    spacing: 2

    Label {
        width: parent.width
        style: Label.Caption
        secondary: true
        text: tile.title
    }

    Label {
        width: parent.width
        style: Label.SheetTitle
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.captionSize
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        text: tile.figure
        Accessible.description: tile.title
    }
}
