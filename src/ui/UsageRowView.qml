import QtQuick
import Velarc

// What one model of one engine has used today.
Card {
    id: row

    required property string engine
    required property string total
    required property string modelID
    required property string details

    padding: Theme.space3
    spacing: 2

    Item {
        width: parent.width
        implicitHeight: Math.max(name.implicitHeight, sum.implicitHeight)

        Label {
            id: name

            anchors.left: parent.left
            anchors.right: sum.left
            anchors.rightMargin: Theme.space2
            font.weight: Font.DemiBold
            text: row.engine
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
        }

        Label {
            id: sum

            anchors.right: parent.right
            font.weight: Font.DemiBold
            text: row.total
            wrapMode: Text.NoWrap
        }
    }

    Label {
        width: parent.width
        secondary: true
        text: row.modelID
        elide: Text.ElideMiddle
        wrapMode: Text.NoWrap
    }

    Label {
        width: parent.width
        style: Label.Caption
        secondary: true
        text: row.details
    }
}
