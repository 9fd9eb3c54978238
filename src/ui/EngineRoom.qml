import QtQuick
import Velarc

// The settings: connections, the default engine, and what is rarely needed. It stands in a sheet and
// in a window of its own.
FocusScope {
    id: room

    readonly property EngineRoomPresenter presenter: Screens.engineRoom(room)
    property int margin: Theme.space5

    implicitWidth: 760
    implicitHeight: 620

    Column {
        id: head

        x: room.margin
        width: room.width - 2 * room.margin
        spacing: Theme.space1

        Label {
            width: parent.width
            style: Label.ScreenTitle
            font.weight: Font.Bold
            text: "Engine Room"
        }

        Label {
            width: parent.width
            secondary: true
            text: "Configure defaults once. Running stays on the home canvas."
        }

        // One line is kept free for both, so that nothing moves when they come.
        Flow {
            width: parent.width
            height: Math.max(oneLine.height, childrenRect.height)
            spacing: Theme.space3

            Label {
                id: saved

                visible: text !== ""
                style: Label.Caption
                font.weight: Font.DemiBold
                color: "#6366F1"
                text: room.presenter.savedLine
            }

            Label {
                width: Math.min(implicitWidth, parent.width)
                visible: text !== ""
                style: Label.Caption
                secondary: true
                text: room.presenter.statusNote
                elide: Text.ElideRight
                wrapMode: Text.NoWrap
            }
        }
    }

    TextMetrics {
        id: oneLine

        font: saved.font
        text: "S"
    }

    SegmentedPicker {
        id: sections

        anchors.top: head.bottom
        anchors.topMargin: Theme.space2
        x: room.margin
        width: Math.min(room.width - 2 * room.margin, Math.max(implicitWidth, 480))
        focus: true
        title: "Section"
        labels: room.presenter.sections
        currentIndex: room.presenter.section
        onPicked: index => room.presenter.pickSection(index)
    }

    ScrollArea {
        anchors.top: sections.bottom
        anchors.topMargin: Theme.space4
        anchors.bottom: parent.bottom
        width: room.width
        padding: room.margin
        topPadding: 2 // for the ring around what has the focus

        EngineRoomConnections {
            width: parent.width
            visible: room.presenter.section === 0
            presenter: room.presenter
        }

        EngineRoomDefault {
            width: parent.width
            visible: room.presenter.section === 1
            presenter: room.presenter
        }

        EngineRoomAdvanced {
            width: parent.width
            visible: room.presenter.section === 2
            presenter: room.presenter
        }
    }
}
