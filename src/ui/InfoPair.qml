import QtQuick
import Velarc

// A fact about a run: its name, and its value to select. Where it is narrow they stand one above the
// other.
Item {
    id: pair

    property string name
    property string value
    readonly property bool isNarrow: width < 420 * Theme.textScale

    implicitHeight: isNarrow ? text.y + text.implicitHeight
                             : Math.max(caption.implicitHeight, text.implicitHeight)

    Label {
        id: caption

        y: Math.round((text.linePitch - text.font.pixelSize * 1.2) / 2)
        width: pair.isNarrow ? pair.width : Math.round(pair.width * 0.3)
        secondary: true
        text: pair.name
    }

    LongText {
        id: text

        x: pair.isNarrow ? 0 : caption.width + Theme.space3
        y: pair.isNarrow ? caption.y + caption.implicitHeight : 0
        width: pair.width - x
        text: pair.value
    }
}
