import QtQuick
import QtQuick.Templates as T
import Velarc

// A sheet over the window: a title with commands beside it, a body, and a foot.
//
// Escape closes it. It keeps the keyboard's focus while it is open and gives it back to whoever had
// it before.
T.Popup {
    id: sheet

    property string title // none: the body has its own
    property string subtitle
    property string accessibleName: title
    property int preferredWidth: 560
    property int preferredHeight: 0 // as tall as the body, if 0
    property alias commands: commandRow.data
    property alias foot: footRow.data
    default property alias body: bodyArea.data
    property Item focusedBefore: null

    parent: T.Overlay.overlay
    modal: true
    focus: true
    dim: true
    closePolicy: T.Popup.CloseOnEscape
    anchors.centerIn: parent
    width: Math.min(preferredWidth, (parent?.width ?? preferredWidth) - 2 * Theme.space6)
    height: Math.min(preferredHeight > 0 ? preferredHeight : implicitHeight,
        (parent?.height ?? implicitHeight) - 2 * Theme.space6)
    implicitHeight: header.height + bodyArea.implicitHeight + footer.height
    padding: 0

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    onAboutToShow: focusedBefore = parent.Window.activeFocusItem
    onClosed: {
        const wasInSheet = isInSheet(focusedBefore);
        if (focusedBefore?.visible && (wasInSheet || !isInSheet(parent.Window.activeFocusItem))) {
            focusedBefore.forceActiveFocus();
        }
        focusedBefore = null;
    }

    // Of this window. Another one may have opened, and taken the focus, before this one closes.
    function isInSheet(item: Item): bool {
        for (let within = item; within !== null; within = within.parent) {
            if (within === sheet.parent) {
                return true;
            }
        }
        return false;
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.gentle
            easing.type: Easing.OutQuad
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Theme.quick
        }
    }

    background: Item {
        Glow {
            corner: Theme.sheetRadius
            blur: 24
            color: Theme.shadow
        }

        Rectangle {
            anchors.fill: parent
            radius: Theme.sheetRadius
            color: Theme.sheetGround
            border.color: Theme.hairline
            antialiasing: true
        }
    }

    contentItem: FocusScope {
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.accessibleName

        Item {
            id: header

            width: parent.width
            height: Math.max(titles.implicitHeight, commandRow.implicitHeight)
                    + 2 * (sheet.title === "" ? Theme.space2 : Theme.space4)

            Column {
                id: titles

                anchors.left: parent.left
                anchors.leftMargin: Theme.space5
                anchors.right: commandRow.left
                anchors.rightMargin: Theme.space3
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Label {
                    width: parent.width
                    style: Label.SheetTitle
                    text: sheet.title
                    elide: Text.ElideRight
                    wrapMode: Text.NoWrap
                }

                Label {
                    width: parent.width
                    visible: text !== ""
                    secondary: true
                    text: sheet.subtitle
                }
            }

            Row {
                id: commandRow

                anchors.right: parent.right
                anchors.rightMargin: Theme.space5
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.space2
            }
        }

        Item {
            id: bodyArea

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: header.bottom
            anchors.bottom: footer.top
            implicitHeight: children.length > 0 ? children[0].implicitHeight : 0
        }

        Item {
            id: footer

            width: parent.width
            height: footRow.children.length > 0 ? footRow.implicitHeight + 2 * Theme.space4 : 0
            anchors.bottom: parent.bottom
            visible: footRow.children.length > 0

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.hairline
            }

            Row {
                id: footRow

                anchors.right: parent.right
                anchors.rightMargin: Theme.space5
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.space2
            }
        }
    }
}
