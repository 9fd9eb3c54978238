import QtQuick
import Velarc

// Asks for another turn on the result.
Item {
    id: box

    readonly property ResultPresenter presenter: Screens.result

    implicitHeight: Math.max(field.implicitHeight, refine.implicitHeight)

    TextField {
        id: field

        anchors.left: parent.left
        anchors.right: refine.left
        anchors.rightMargin: Theme.space2
        anchors.verticalCenter: parent.verticalCenter
        placeholderText: "Refine this output..."
        text: box.presenter.refinePrompt
        onTextChanged: box.presenter.refinePrompt = text
        onAccepted: box.presenter.refine()
    }

    Button {
        id: refine

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        kind: Button.Prominent
        text: "Refine"
        enabled: box.presenter.canRefine
        onClicked: box.presenter.refine()
    }
}
