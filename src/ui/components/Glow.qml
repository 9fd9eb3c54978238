import QtQuick
import Velarc

// A soft light, or shadow, around an item with round corners.
BorderImage {
    property int corner: Theme.cardRadius
    property int blur: Theme.dropGlowRadius
    property color color: Theme.dropGlow

    readonly property int edge: corner + blur

    anchors.fill: parent
    anchors.margins: -blur
    source: "image://glow/" + argb(color) + "/" + corner + "/" + blur
    border {
        left: edge
        right: edge
        top: edge
        bottom: edge
    }

    // "aarrggbb"; a colour without transparency is written without it.
    function argb(value: color): string {
        const text = value.toString().slice(1);
        return text.length === 6 ? "ff" + text : text;
    }
}
