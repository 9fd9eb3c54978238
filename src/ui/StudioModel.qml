import QtQuick
import Velarc

// Which engine and model run the action.
FormSection {
    id: section

    readonly property StudioPresenter presenter: Screens.studio

    title: "Model"
    trailing: Tag {
        text: section.presenter.modelTag
        tint: Theme.accentText
    }

    Label {
        width: parent.width
        secondary: true
        text: section.presenter.globalDefaultNote
    }

    Disclosure {
        width: parent.width
        title: "Advanced: Provider + model override"
        symbol: "slider.horizontal.3"
        isOpen: section.presenter.showsAdvanced
        onToggled: section.presenter.toggleAdvanced()

        Column {
            spacing: Theme.space3

            ProviderCardPicker {
                width: parent.width
                cards: section.presenter.engines
                includeSubtitle: false
                onPicked: provider => section.presenter.pickEngine(provider)
            }

            FormRow {
                width: parent.width
                visible: section.presenter.modelTitle !== ""
                label: section.presenter.modelTitle

                Picker {
                    width: parent.width
                    title: section.presenter.modelTitle
                    labels: section.presenter.modelNames
                    otherLabel: section.presenter.modelID
                    currentIndex: section.presenter.modelIndex
                    onPicked: index => section.presenter.pickModel(index)
                }
            }

            FormRow {
                width: parent.width
                visible: section.presenter.modelTitle !== ""
                label: "Custom model ID"

                TextField {
                    width: parent.width
                    accessibleName: "Custom model ID"
                    text: section.presenter.modelID
                    onTextEdited: section.presenter.modelID = text
                }
            }
        }
    }
}
