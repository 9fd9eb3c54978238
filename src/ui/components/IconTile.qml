import QtQuick
import Velarc

// An action's or engine's symbol in its colour, on a tile of the same colour.
Rectangle {
    id: tile

    property string symbol
    property color tint: Theme.accent
    property int size: 30
    property int symbolSize: Math.round(size * 0.54)
    property real tileOpacity: 0.16

    implicitWidth: size
    implicitHeight: size
    radius: Math.round(size * 0.28)
    color: Theme.withOpacity(Theme.symbolColor(tint), tileOpacity)

    Icon {
        anchors.centerIn: parent
        symbol: tile.symbol
        size: tile.symbolSize
        color: Theme.symbolColor(tile.tint)
    }
}
