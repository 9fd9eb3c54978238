import QtQuick
import Velarc

// What the action gives, and where that goes.
FormSection {
    id: section

    readonly property StudioPresenter presenter: Screens.studio

    title: "Output"

    FormRow {
        width: parent.width
        label: "Format"

        Picker {
            width: Math.min(parent.width, 320)
            title: "Format"
            labels: section.presenter.formatNames
            currentIndex: section.presenter.formatIndex
            onPicked: index => section.presenter.pickFormat(index)
        }
    }

    Label {
        width: parent.width
        visible: text !== ""
        style: Label.Caption
        secondary: true
        text: section.presenter.formatNote
    }

    FormRow {
        width: parent.width
        label: "Destination"

        Picker {
            width: Math.min(parent.width, 320)
            title: "Destination"
            labels: section.presenter.destinationNames
            groups: section.presenter.destinationGroups
            currentIndex: section.presenter.destinationIndex
            onPicked: index => section.presenter.pickDestination(index)
        }
    }
}
