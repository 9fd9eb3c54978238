import QtQuick
import QtQuick.Templates as T
import Velarc

// Technical text of any length to read, select and copy, in a well that scrolls.
Item {
    id: pane

    property alias text: body.text
    property string accessibleName
    property int minimumHeight: 0
    property int maximumHeight: 300
    readonly property int margin: Theme.space3

    implicitWidth: 320
    implicitHeight: Math.max(minimumHeight,
        Math.min(maximumHeight, body.implicitHeight + 2 * margin))

    Rectangle {
        anchors.fill: parent
        radius: Theme.chipRadius
        color: Theme.well
        border.color: Theme.hairline
        antialiasing: true
    }

    Flickable {
        id: flickable

        anchors.fill: parent
        anchors.margins: 1
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        contentWidth: width
        contentHeight: body.implicitHeight + 2 * pane.margin
        T.ScrollBar.vertical: ScrollBar {}

        LongText {
            id: body

            x: pane.margin
            y: pane.margin
            width: flickable.width - 2 * pane.margin
            accessibleName: pane.accessibleName
            font.family: Theme.monospace
        }
    }
}
