import QtQuick
import Velarc

// One cloud engine among the connections.
Item {
    id: item

    property string symbol
    property color colorHex: Theme.accent
    property string name
    property string subtitle
    property string badge
    property string status
    property bool isConnected: false
    property bool separated: false
    // Where the row is narrow, the commands stand under the texts.
    readonly property bool isNarrow: width < 520 * Math.max(1, Theme.textScale)

    signal connectRequested
    signal disconnectRequested

    implicitHeight: commands.y + (isNarrow ? commands.implicitHeight
                                           : Math.max(commands.implicitHeight, texts.height - commands.y + texts.y))
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Rectangle {
        width: parent.width
        height: 1
        visible: item.separated
        color: Theme.hairline
    }

    IconTile {
        id: tile

        y: texts.y
        size: 40
        symbol: item.symbol
        tint: item.colorHex
    }

    Column {
        id: texts

        anchors.left: tile.right
        anchors.leftMargin: Theme.space3
        anchors.right: item.isNarrow ? parent.right : commands.left
        anchors.rightMargin: item.isNarrow ? 0 : Theme.space3
        y: item.separated ? Theme.space4 + 1 : 0
        spacing: 2

        Flow {
            width: parent.width
            spacing: Theme.space2

            Label {
                height: pill.height
                text: item.name
                font.weight: Font.DemiBold
                verticalAlignment: Text.AlignVCenter
            }

            Badge {
                id: pill

                text: item.badge
                tint: item.isConnected ? Theme.success : Theme.warningStroke
                foreground: item.isConnected ? Theme.successText : Theme.warningBadgeText
            }
        }

        Label {
            width: parent.width
            style: Label.Caption
            text: item.subtitle
        }

        Label {
            width: parent.width
            style: Label.Caption
            secondary: true
            text: item.status
        }
    }

    Flow {
        id: commands

        x: item.isNarrow ? texts.x : item.width - width
        y: item.isNarrow ? texts.y + texts.height + Theme.space2
                         : texts.y + Math.max(0, Math.round((texts.height - implicitHeight) / 2))
        width: item.isNarrow ? item.width - x
                             : connect.width + (item.isConnected ? disconnect.width + spacing : 0)
        spacing: Theme.space2

        // One button for both, so that it keeps the keyboard's focus when the engine is connected.
        Button {
            id: connect

            readonly property color quiet: "#475569" // a literal in a call is no colour yet

            kind: item.isConnected ? Button.Bordered : Button.Prominent
            tint: "#6366F1"
            foreground: item.isConnected ? Theme.symbolColor(quiet) : Theme.textOnAccent
            text: item.isConnected ? "Reconnect" : "Connect"
            Accessible.description: item.name
            onClicked: item.connectRequested()
        }

        Button {
            id: disconnect

            visible: item.isConnected
            text: "Disconnect"
            Accessible.description: item.name
            onClicked: item.disconnectRequested()
            onVisibleChanged: if (!visible && focus) {
                connect.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }
}
