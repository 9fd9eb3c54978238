import QtQuick
import Velarc

// A sheet that is made when it is wanted, stands while `presented` says so, and goes when it is
// closed. `sheet` names its file, which is not read before: the start of the program has no need of it.
Loader {
    id: slot

    required property bool presented
    required property string sheet

    // The user closed it.
    signal dismissed

    readonly property Sheet open: item as Sheet
    property bool isClosing: false // the sheet that stands here; it fades away

    active: false
    source: Qt.resolvedUrl("../" + sheet + ".qml")
    onPresentedChanged: follow()
    Component.onCompleted: follow()
    onLoaded: {
        isClosing = false;
        (item as Sheet).open();
    }

    // A sheet that is still fading in counts as open.
    function follow() {
        const stands = open !== null && !isClosing;
        if (presented && !stands) {
            active = false;
            active = true;
        } else if (!presented && stands) {
            open.close();
        }
    }

    // Not inside the sheet's own signal.
    Timer {
        id: unloading

        interval: 0
        onTriggered: slot.active = slot.presented
    }

    Connections {
        target: slot.open
        ignoreUnknownSignals: true

        function onAboutToHide() {
            slot.isClosing = true;
            if (slot.presented) {
                slot.dismissed();
            }
        }

        function onClosed() {
            unloading.start();
        }
    }
}
