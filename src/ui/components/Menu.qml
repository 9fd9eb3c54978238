import QtQuick
import QtQuick.Templates as T
import Velarc

// A menu of commands.
T.Menu {
    id: menu

    implicitWidth: Math.max(180, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    contentHeight: list.contentHeight
    padding: Theme.space1 + 1
    margins: Theme.space2
    modal: true
    dim: false

    delegate: MenuItem {}

    contentItem: ListView {
        id: list

        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let at = 0; at < menu.count; ++at) {
                widest = Math.max(widest, menu.itemAt(at)?.implicitWidth ?? 0);
            }
            return widest;
        }
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: contentHeight > height
        clip: true
    }

    background: Item {
        Glow {
            corner: Theme.chipRadius
            blur: 14
            color: Theme.shadow
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.chipRadius
            color: Theme.popupGround
            border.color: Theme.hairline
            antialiasing: true
        }
    }
}
