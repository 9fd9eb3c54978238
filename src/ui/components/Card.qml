import QtQuick
import Velarc

// A rounded surface that holds one thing, as tall as what stands in it.
Item {
    id: card

    property int padding: Theme.space4
    property color stroke: Theme.inputBorder
    default property alias content: column.data
    property alias spacing: column.spacing

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding

    Surface {
        anchors.fill: parent
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
