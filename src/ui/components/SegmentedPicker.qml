import QtQuick
import QtQuick.Templates as T
import Velarc

// One choice of a few, side by side. The choice is whoever owns `currentIndex`'s to change: a press
// only says which one is wanted.
FocusScope {
    id: picker

    required property list<string> labels
    property int currentIndex: 0
    property string title // its name; not shown

    signal picked(int index)

    implicitHeight: Theme.controlHeight + 4
    implicitWidth: row.widest * labels.length + 6
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Rectangle {
        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0.1, 0.08, 0.3, 0.06)
        antialiasing: true
    }

    Row {
        id: row

        readonly property real widest: {
            let widest = 64;
            for (let at = 0; at < repeater.count; ++at) {
                widest = Math.max(widest, repeater.itemAt(at)?.implicitWidth ?? 0);
            }
            return widest;
        }

        x: 3
        y: 3
        width: picker.width - 6

        // qmllint disable unqualified
        Repeater {
            id: repeater

            model: picker.labels

            T.RadioButton {
                id: segment

                required property string modelData
                required property int index

                width: row.width / repeater.count
                height: picker.height - 6
                implicitWidth: label.implicitWidth + 2 * Theme.space4
                autoExclusive: false
                checkable: false
                checked: index === picker.currentIndex
                focusPolicy: checked || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                focus: checked
                hoverEnabled: true
                text: modelData
                opacity: enabled ? 1 : 0.5
                onClicked: picker.picked(index)
                Keys.onLeftPressed: picker.step(-1)
                Keys.onRightPressed: picker.step(1)
                Accessible.role: Accessible.RadioButton
                Accessible.name: text
                Accessible.checkable: true
                Accessible.checked: checked
                Accessible.onPressAction: segment.clicked()

                contentItem: Text {
                    id: label

                    text: segment.text
                    font.pixelSize: Theme.bodySize
                    font.weight: segment.checked ? Font.DemiBold : Font.Normal
                    color: segment.checked || segment.hovered ? Theme.text : Theme.secondaryText
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }

                background: Rectangle {
                    radius: Theme.controlRadius - 3
                    color: segment.checked ? (Theme.dark ? Qt.rgba(1, 1, 1, 0.16) : "#FFFFFF")
                        : segment.down ? Theme.pressed : segment.hovered ? Theme.hover : "transparent"
                    border.width: segment.checked ? 1 : 0
                    border.color: Theme.hairline
                    antialiasing: true

                    FocusRing {
                        shown: segment.visualFocus
                        targetRadius: Theme.controlRadius - 3
                    }
                }
            }
        }
        // qmllint enable unqualified
    }

    function step(by: int) {
        const next = currentIndex + by;
        if (next >= 0 && next < labels.length) {
            picked(next);
            repeater.itemAt(next).forceActiveFocus(Qt.TabFocusReason);
        }
    }
}
