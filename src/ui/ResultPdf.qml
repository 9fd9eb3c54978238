import QtQuick
import Velarc

// The file of a result, by its name.
Flow {
    id: view

    spacing: Theme.space2

    Item {
        width: Math.min(implicitWidth, view.width)
        implicitWidth: icon.width + Theme.space3 + Math.ceil(name.implicitWidth) + Theme.space3
        implicitHeight: Math.max(Theme.controlHeight, name.implicitHeight)

        Icon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            symbol: "doc.richtext"
            size: Math.round(Theme.symbolSize * 1.5)
            color: Theme.accentText
        }

        Label {
            id: name

            anchors.left: icon.right
            anchors.leftMargin: Theme.space3
            anchors.right: parent.right
            anchors.rightMargin: Theme.space3
            anchors.verticalCenter: parent.verticalCenter
            text: Screens.result.pdfName
            elide: Text.ElideMiddle
            wrapMode: Text.NoWrap
        }

        HoverHandler {
            id: pointer
        }

        Tip {
            text: name.truncated ? name.text : ""
            wanted: pointer.hovered
        }
    }

    Button {
        visible: Screens.share.canOpen
        kind: Button.Plain
        foreground: Theme.accentText
        text: "Open"
        onClicked: Screens.share.open()
    }

    Button {
        visible: Screens.share.canShowInFolder
        kind: Button.Plain
        foreground: Theme.accentText
        text: "Show in Folder"
        onClicked: Screens.share.showInFolder()
    }
}
