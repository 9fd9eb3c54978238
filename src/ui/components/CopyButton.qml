import QtQuick
import Velarc

// Copies something, and shows for a moment that it did.
Button {
    id: button

    symbol: done.running ? "checkmark" : "doc.on.doc"
    onClicked: done.restart()

    Timer {
        id: done

        interval: 1400
    }
}
