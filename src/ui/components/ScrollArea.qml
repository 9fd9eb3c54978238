import QtQuick
import QtQuick.Templates as T
import Velarc

// A column that scrolls where it is too tall, and follows the keyboard's focus.
Flickable {
    id: area

    default property alias content: column.data
    property alias spacing: column.spacing
    property int padding: 0
    property int topPadding: padding
    property int bottomPadding: padding
    readonly property real availableHeight: height - topPadding - bottomPadding
    property int maximumContentWidth: 100000

    contentWidth: width
    contentHeight: column.implicitHeight + topPadding + bottomPadding
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    clip: true

    T.ScrollBar.vertical: ScrollBar {}

    Column {
        id: column

        x: Math.round((area.width - width) / 2)
        y: area.topPadding
        width: Math.min(area.maximumContentWidth, area.width - 2 * area.padding)
        spacing: Theme.space4
    }

    Connections {
        target: area.Window.window
        ignoreUnknownSignals: true

        function onActiveFocusItemChanged() {
            area.reveal(area.Window.activeFocusItem);
        }
    }

    function reveal(focused: Item) {
        let item = focused;
        for (let up = item; up !== column; up = up.parent) {
            if (up === null) {
                return;
            }
            if (up instanceof Flickable) {
                item = up; // it shows its own part of what it holds
            }
        }
        const top = item.mapToItem(column, 0, 0).y + topPadding;
        if (item.height > height) {
            return;
        }
        if (top - Theme.space2 < contentY) {
            contentY = Math.max(0, top - Theme.space2);
        } else if (top + item.height + Theme.space2 > contentY + height) {
            contentY = Math.min(contentHeight - height, top + item.height + Theme.space2 - height);
        }
    }
}
