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

    onAboutToShow: {
        const holder = parent.Window.activeFocusItem;
        focusedBefore = holder === parent.Window.contentItem ? null : holder;
    }
    onClosed: {
        const holder = parent.Window.activeFocusItem;
        if (holder === null || holder === parent.Window.contentItem) {
            giveFocusBack();
        } // else another sheet has taken it
        focusedBefore = null;
    }

    // To who had it, or to what is left around them; should their sheet have gone, to the screen
    // below, which knows who had it there.
    function giveFocusBack() {
        const holder = standing(focusedBefore) ?? screenBelow();
        holder?.forceActiveFocus();
    }

    function standing(item: Item): Item {
        if (item === null || item.visible && (item === focusedBefore || isScope(item))) {
            return item;
        }
        return standing(item.parent);
    }

    function screenBelow(): Item {
        const screens = parent.Window.contentItem.children;
        for (let at = 0; at < screens.length; ++at) {
            if (isScope(screens[at])) {
                return screens[at];
            }
        }
        return null;
    }

    function isScope(item: Item): bool {
        return item instanceof FocusScope; // a cast of it ends the compiler of Qt 6.4
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

            readonly property int pitch: Math.max(titles.implicitHeight, commandRow.implicitHeight)

            width: parent.width
            height: sheet.title === "" ? Theme.space4 : pitch + 2 * Theme.space4
            z: 1 // without a title its commands stand beside the body's own

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
                y: Theme.space4 + (header.pitch - height) / 2
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
