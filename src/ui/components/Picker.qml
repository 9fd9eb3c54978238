import QtQuick
import QtQuick.Templates as T
import Velarc

// One choice of many, from a list that drops down. `labels` are its rows; a press says which one is
// wanted, and whoever owns `currentIndex` changes it. An index of -1 selects none.
T.ComboBox {
    id: picker

    required property list<string> labels
    property list<color> dots // a dot before each row, where given
    property list<string> groups // of each row, where given; a heading stands where one begins
    property string title // its name
    property string otherLabel // what stands where none is selected
    property color otherDot: "transparent"

    readonly property string shownText: currentIndex < 0 ? otherLabel : displayText

    signal picked(int index)

    model: labels
    implicitHeight: Theme.controlHeight
    implicitWidth: 220
    leftPadding: Theme.space3
    rightPadding: Theme.space8
    hoverEnabled: true
    font.pixelSize: Theme.bodySize
    opacity: enabled ? 1 : 0.5
    onActivated: index => picked(index)
    Accessible.role: Accessible.ComboBox
    Accessible.name: title
    Accessible.description: shownText
    Accessible.onPressAction: popup.open()

    contentItem: Item {
        PickerRow {
            anchors.fill: parent
            text: picker.shownText
            dot: picker.currentIndex < 0 ? picker.otherDot
                : picker.currentIndex < picker.dots.length ? picker.dots[picker.currentIndex]
                : "transparent"
        }
    }

    indicator: Icon {
        x: picker.width - width - Theme.space2
        y: Math.round((picker.height - height) / 2)
        symbol: "chevron.down"
        size: Math.round(Theme.symbolSize * 0.8)
        color: Theme.secondaryText
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: picker.pressed ? Theme.controlPressed
                              : picker.hovered ? Theme.controlHover : Theme.control
        border.width: 1
        border.color: Theme.controlBorder
        antialiasing: true

        FocusRing {
            shown: picker.visualFocus
        }
    }

    // qmllint disable unqualified
    delegate: T.ItemDelegate {
        id: row

        required property string modelData
        required property int index

        readonly property bool beginsGroup: index < picker.groups.length
            && (index === 0 || picker.groups[index] !== picker.groups[index - 1])

        width: ListView.view?.width ?? picker.width
        height: Theme.controlHeight + topPadding
        topPadding: beginsGroup ? heading.height : 0
        bottomPadding: 0
        leftPadding: Theme.space3
        rightPadding: Theme.space3
        highlighted: picker.highlightedIndex === index
        text: modelData
        Accessible.role: Accessible.ListItem
        Accessible.name: text
        Accessible.onPressAction: row.clicked()

        contentItem: PickerRow {
            text: row.text
            dot: row.index < picker.dots.length ? picker.dots[row.index] : "transparent"
            strong: row.index === picker.currentIndex
        }

        background: Item {
            Rectangle {
                y: row.topPadding
                width: parent.width
                height: parent.height - y
                radius: Theme.chipRadius - 5
                color: row.highlighted ? Theme.selection : "transparent"
            }
        }

        SectionHeader {
            id: heading

            visible: row.beginsGroup
            width: row.width
            leftPadding: Theme.space3
            topPadding: Theme.space2
            bottomPadding: Theme.space1
            text: row.index < picker.groups.length ? picker.groups[row.index] : ""
        }
    }
    // qmllint enable unqualified

    popup: T.Popup {
        y: picker.height + 4
        width: picker.width
        height: Math.min(contentItem.implicitHeight + 2 * padding, 400)
        padding: Theme.space1 + 1
        margins: Theme.space2

        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: picker.popup.visible ? picker.delegateModel : null
            currentIndex: picker.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollBar {}
        }

        background: Rectangle {
            radius: Theme.chipRadius
            color: Theme.popupGround
            border.color: Theme.hairline
            antialiasing: true
        }
    }
}
