import QtQuick
import QtQuick.Templates as T
import Velarc

// The name of a symbol, with names that it may become in a list under it: the arrow keys go through
// them, Return or Tab takes one, Escape closes them.
TextField {
    id: field

    property list<string> completions
    property bool isOpen: false
    property int current: -1 // of the list; its own starts at the first at each change
    readonly property bool offers: isOpen && activeFocus && completions.length > 0

    signal picked(string name)

    onTextEdited: {
        isOpen = true;
        current = -1;
    }
    onActiveFocusChanged: isOpen = false
    Accessible.description: offers ? completions.length + " suggestions" : ""

    Keys.onShortcutOverride: event => event.accepted = offers && event.key === Qt.Key_Escape
    Keys.onEscapePressed: event => {
        event.accepted = offers;
        isOpen = false;
    }
    Keys.onDownPressed: step(1)
    Keys.onUpPressed: step(-1)
    Keys.onReturnPressed: event => event.accepted = takeCurrent()
    Keys.onEnterPressed: event => event.accepted = takeCurrent()
    Keys.onTabPressed: event => event.accepted = takeCurrent()

    function step(by: int) {
        if (!offers) {
            isOpen = by > 0;
            current = -1;
            return;
        }
        current = Math.max(-1, Math.min(completions.length - 1, current + by));
        list.positionViewAtIndex(Math.max(0, current), ListView.Contain);
    }

    function takeCurrent(): bool {
        if (!offers || current < 0) {
            return false;
        }
        take(completions[current]);
        return true;
    }

    function take(name: string) {
        isOpen = false;
        picked(name);
    }

    T.Popup {
        y: field.height + 4
        width: field.width
        height: Math.min(list.contentHeight + 2 * padding, 6 * Theme.controlHeight)
        padding: Theme.space1 + 1
        margins: Theme.space2
        visible: field.offers
        closePolicy: T.Popup.NoAutoClose

        contentItem: ListView {
            id: list

            clip: true
            model: field.completions
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollBar {}

            // qmllint disable unqualified
            delegate: T.ItemDelegate {
                id: row

                required property string modelData
                required property int index

                width: list.width
                height: Theme.controlHeight
                leftPadding: Theme.space2
                rightPadding: Theme.space2
                focusPolicy: Qt.NoFocus
                hoverEnabled: true
                text: modelData
                onClicked: field.take(modelData)
                Accessible.role: Accessible.ListItem
                Accessible.name: text
                Accessible.onPressAction: row.clicked()

                contentItem: IconLabel {
                    centred: false
                    symbol: row.modelData
                    text: row.modelData
                    font.pixelSize: Theme.bodySize
                }

                background: Rectangle {
                    radius: Theme.chipRadius - 5
                    color: row.index === field.current ? Theme.selection
                        : row.hovered ? Theme.hover : "transparent"
                }
            }
            // qmllint enable unqualified
        }

        background: Rectangle {
            radius: Theme.chipRadius
            color: Theme.popupGround
            border.color: Theme.hairline
            antialiasing: true
        }
    }
}
