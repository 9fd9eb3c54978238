import QtQuick
import Velarc

// A rounded surface that holds one thing, as tall as what stands in it.
Item {
    id: card

    property int padding: Theme.space4
    property color stroke: Theme.inputBorder
    default property alias content: column.data
    property alias spacing: column.spacing
    readonly property bool isVeryTall: height > 4096

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding

    // What is painted costs memory by its size, even unseen; the gradient of a very tall card would
    // not be noticed.
    Rectangle {
        anchors.fill: parent
        visible: card.isVeryTall
        color: Theme.cardBottom
        border.color: card.stroke
        radius: Theme.cardRadius
        antialiasing: true
    }

    Surface {
        width: parent.width
        height: card.isVeryTall ? 0 : parent.height
        from: Theme.cardTop
        to: Theme.cardBottom
        stroke: card.stroke
        radius: Theme.cardRadius
    }

    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
        spacing: Theme.space3
    }
}
