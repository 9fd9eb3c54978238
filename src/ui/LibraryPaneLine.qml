import QtQuick
import Velarc

// What goes on in the library, in one line, with the way out of it.
FocusScope {
    id: line

    property string text
    property bool isBusy: false

    implicitHeight: cancel.implicitHeight

    Spinner {
        id: spinner

        visible: line.isBusy
        anchors.verticalCenter: parent.verticalCenter
    }

    Label {
        anchors.left: line.isBusy ? spinner.right : parent.left
        anchors.leftMargin: line.isBusy ? Theme.space2 : 0
        anchors.right: cancel.left
        anchors.verticalCenter: parent.verticalCenter
        font.weight: Font.DemiBold
        text: line.text
    }

    Button {
        id: cancel

        anchors.right: parent.right
        focus: true
        text: "Cancel"
        onClicked: Screens.transfer.cancel()
    }
}
