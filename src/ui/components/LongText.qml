import QtQuick
import Velarc

// Text of any length to read, select and copy: as much as `lineLimit` lines of it, or all. What the
// limit cuts fades out.
Item {
    id: reader

    property alias text: body.text
    property alias font: body.font
    property alias color: body.color
    property alias lineLimit: body.lineLimit
    property alias isCut: body.isCut
    property alias linePitch: body.linePitch
    property string accessibleName // before the text, where it is not clear what it is
    property color ground: Theme.cardBottom // that it fades into

    implicitWidth: 320
    implicitHeight: body.implicitHeight

    LongTextItem {
        id: body

        objectName: "longText"
        width: reader.width
        height: implicitHeight
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.textOnAccent
        font.pixelSize: Theme.bodySize
        lineHeight: Theme.readingLineHeight / 1.2 // of the font's own, which has some space already
        onCopyRequested: text => Screens.result.copyText(text)
        onMenuRequested: at => {
            menu.active = true;
            (menu.item as Menu).popup(body, at);
        }
        Accessible.role: Accessible.StaticText
        Accessible.name: reader.accessibleName === "" ? spokenText
                                                      : reader.accessibleName + " " + spokenText

        FocusRing {
            shown: body.visualFocus
            targetRadius: 4
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 2 * body.linePitch
        visible: body.isCut
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Theme.withOpacity(reader.ground, 0)
            }
            GradientStop {
                position: 1
                color: reader.ground
            }
        }
    }

    Loader {
        id: menu

        active: false
        // qmllint disable unqualified
        sourceComponent: Menu {
            MenuItem {
                text: "Copy"
                enabled: body.hasSelection
                onTriggered: body.copy()
            }

            MenuItem {
                text: "Select All"
                onTriggered: body.selectAll()
            }
        }
        // qmllint enable unqualified
    }
}
