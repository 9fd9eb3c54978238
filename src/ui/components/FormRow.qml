import QtQuick
import Velarc

// A labelled control of a form. The label stands before the control, or above it where it is narrow.
Item {
    id: row

    property string label
    property int labelWidth: 140
    default property alias control: slot.data
    readonly property bool isNarrow: width < 420

    implicitWidth: 420
    implicitHeight: isNarrow ? caption.implicitHeight + Theme.space1 + slot.childrenRect.height
                             : Math.max(caption.implicitHeight, slot.childrenRect.height)

    Label {
        id: caption

        y: row.isNarrow ? 0 : Math.round((Theme.controlHeight - implicitHeight) / 2)
        width: row.isNarrow ? row.width : row.labelWidth
        secondary: true
        text: row.label
    }

    Item {
        id: slot

        x: row.isNarrow ? 0 : row.labelWidth + Theme.space3
        y: row.isNarrow ? caption.implicitHeight + Theme.space1 : 0
        width: row.width - x
        height: childrenRect.height
    }
}
