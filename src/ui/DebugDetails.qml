import QtQuick
import Velarc

// What was sent in a run, what came back, and facts about it.
Column {
    id: details

    readonly property ResultPresenter presenter: Screens.result
    readonly property list<string> tabLabels: ["Request", "Response", "Info"]
    readonly property string tabLabel: tabLabels[presenter.debugTab]

    spacing: Theme.space3

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }

    Item {
        width: parent.width
        implicitHeight: Math.max(caption.implicitHeight, copy.implicitHeight)

        SectionHeader {
            id: caption

            anchors.left: parent.left
            anchors.right: copy.left
            anchors.verticalCenter: parent.verticalCenter
            text: "Details"
        }

        Button {
            id: copy

            anchors.right: parent.right
            symbol: "doc.on.doc"
            text: "Copy " + details.tabLabel
            onClicked: details.presenter.copyDebugTab()
        }
    }

    SegmentedPicker {
        width: parent.width
        title: "Debug Tab"
        labels: details.tabLabels
        currentIndex: details.presenter.debugTab
        onPicked: index => details.presenter.debugTab = index
    }

    TextPane {
        width: parent.width
        visible: details.presenter.debugTab !== ResultPresenter.Info
        minimumHeight: 120
        maximumHeight: details.presenter.isExpanded ? 300 : 220
        accessibleName: details.tabLabel
        text: visible ? details.presenter.debugText : ""
    }

    Label {
        width: parent.width
        visible: details.presenter.debugTab === ResultPresenter.Info && rows.count === 0
        secondary: true
        text: "No metadata available for this run."
    }

    Column {
        width: parent.width
        visible: details.presenter.debugTab === ResultPresenter.Info && rows.count > 0
        spacing: Theme.space2

        Repeater {
            id: rows

            model: details.presenter.infoRows

            InfoPair {
                required name
                required value

                width: (parent as Column)?.width ?? 320
            }
        }
    }
}
