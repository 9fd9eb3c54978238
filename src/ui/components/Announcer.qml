import QtQuick

// Has a screen reader say `text` whenever it changes to something. Nothing is seen of it.
Item {
    property string text

    width: 1
    height: 1
    visible: text !== ""
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    // What appears is read out: so it goes and comes again for each text.
    onTextChanged: {
        visible = false;
        visible = text !== "";
    }
}
