import QtQuick
import Velarc

// The product's name: four letters in a gradient, two on a badge. A screen reader reads it as one.
Item {
    id: wordmark

    implicitWidth: row.implicitWidth
    implicitHeight: 24
    Accessible.role: Accessible.StaticText
    Accessible.name: "Velarc"

    Row {
        id: row

        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        GradientText {
            anchors.verticalCenter: parent.verticalCenter
            text: "Vela"
            pixelSize: 18
            letterSpacing: -0.3
            leading: Theme.wordmarkGradient[0]
            trailing: Theme.wordmarkGradient[1]
        }

        Surface {
            anchors.verticalCenter: parent.verticalCenter
            width: 30
            height: 20
            radius: 6
            sideways: true
            from: Theme.wordmarkBadgeGradient[0]
            to: Theme.wordmarkBadgeGradient[1]

            Text {
                anchors.centerIn: parent
                text: "rc"
                color: Theme.wordmarkBadgeText
                font.pixelSize: 14
                font.weight: Font.Black
                Accessible.ignored: true
            }
        }
    }
}
