import QtQuick
import Velarc

// A way from the More sheet to somewhere else.
ListRow {
    id: row

    leftPadding: Theme.space3
    rightPadding: Theme.space3
    implicitHeight: Math.max(40, Theme.controlHeight + Theme.space2)
    Accessible.role: Accessible.Button
    Keys.onReturnPressed: row.clicked()
    Keys.onEnterPressed: row.clicked()

    Icon {
        anchors.verticalCenter: parent?.verticalCenter
        symbol: "chevron.right"
        size: 12
        color: Theme.secondaryText
    }
}
