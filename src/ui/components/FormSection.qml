import QtQuick
import Velarc

// A group of a form: its heading, what stands at the heading's end, and a card with its rows.
Column {
    id: section

    property string title
    property alias trailing: trailingRow.data
    default property alias content: card.content

    spacing: Theme.space2

    Item {
        width: parent.width
        implicitHeight: Math.max(heading.implicitHeight, trailingRow.implicitHeight)

        Label {
            id: heading

            anchors.left: parent.left
            anchors.leftMargin: Theme.space1
            anchors.right: trailingRow.left
            anchors.verticalCenter: parent.verticalCenter
            style: Label.CardTitle
            text: section.title
        }

        Row {
            id: trailingRow

            anchors.right: parent.right
            anchors.rightMargin: Theme.space1
            anchors.verticalCenter: parent.verticalCenter
        }
    }

    Card {
        id: card

        width: parent.width
    }
}
