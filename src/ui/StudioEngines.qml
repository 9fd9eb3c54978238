import QtQuick
import Velarc

// The engine that runs the action instead of the default one, and its model.
Column {
    id: block

    readonly property StudioPresenter presenter: Screens.studio
    readonly property bool hasModels: presenter.modelTitle !== ""

    spacing: Theme.space3

    ProviderCardPicker {
        width: parent.width
        cards: block.presenter.engines
        includeSubtitle: false
        onPicked: provider => block.presenter.pickEngine(provider)
    }

    FormRow {
        width: parent.width
        visible: block.hasModels
        label: block.presenter.modelTitle

        Picker {
            width: parent.width
            title: block.presenter.modelTitle
            labels: block.presenter.modelNames
            otherLabel: block.presenter.modelID
            currentIndex: block.presenter.modelIndex
            onPicked: index => block.presenter.pickModel(index)
        }
    }

    FormRow {
        width: parent.width
        visible: block.hasModels
        label: "Custom model ID"

        TextField {
            width: parent.width
            accessibleName: "Custom model ID"
            text: block.presenter.modelID
            onTextEdited: block.presenter.modelID = text
        }
    }
}
