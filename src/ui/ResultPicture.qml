import QtQuick
import Velarc

// The picture of a result, fitted into its place.
Item {
    id: view

    readonly property ResultPresenter presenter: Screens.result
    readonly property bool isBroken: presenter.isPictureBroken
    readonly property int tallest: presenter.isExpanded ? 860 : 360

    implicitHeight: isBroken ? apology.implicitHeight
        : Math.max(180, Math.min(tallest, image.sourceRatio * width))

    Rectangle {
        anchors.fill: parent
        visible: !view.isBroken
        radius: Theme.chipRadius
        color: Theme.well
        border.color: Theme.hairline
        antialiasing: true
    }

    Image {
        id: image

        readonly property real sourceRatio: implicitWidth > 0 ? implicitHeight / implicitWidth : 0

        anchors.fill: parent
        anchors.margins: Theme.space2
        source: view.presenter.picture
        fillMode: Image.PreserveAspectFit
        cache: false
        smooth: true
        mipmap: true
        Accessible.role: Accessible.Graphic
        Accessible.name: "Result image"
    }

    Spinner {
        anchors.centerIn: parent
        visible: !view.isBroken && image.status !== Image.Ready
    }

    Label {
        id: apology

        width: parent.width
        visible: view.isBroken
        secondary: true
        text: "Image generated, but preview could not be rendered."
    }
}
