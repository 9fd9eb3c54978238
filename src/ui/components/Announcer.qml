import QtQuick
import Velarc

// Has a screen reader say `text` whenever it changes to something. Nothing is seen of it.
Item {
    id: announcer

    property string text

    width: 1
    height: 1
    visible: false
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    // What appears is read out: so it goes and comes again for each text.
    onTextChanged: {
        visible = false;
        if (text !== "") {
            Qt.callLater(announcer.appear);
        }
    }
    Component.onCompleted: if (text !== "") {
        Qt.callLater(announcer.appear);
    }

    function appear() {
        visible = true;
    }
}
