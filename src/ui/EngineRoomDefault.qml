import QtQuick
import Velarc

// The engine that actions run on unless they name one, and its model.
Card {
    id: card

    property EngineRoomPresenter presenter: Screens.engineRoom(card)

    spacing: Theme.space4

    Label {
        width: parent.width
        style: Label.CardTitle
        text: "Default Engine"
    }

    ProviderCardPicker {
        width: parent.width
        title: "Default Engine"
        cards: card.presenter.cards
        onPicked: provider => card.presenter.pickDefault(provider)
    }

    Label {
        visible: !card.presenter.hasModelSelector
        secondary: true
        text: "Model selection is only required for connected cloud providers."
    }

    Column {
        width: parent.width
        visible: card.presenter.hasModelSelector
        spacing: Theme.space3

        Label {
            width: parent.width
            font.weight: Font.DemiBold
            text: card.presenter.modelLine
        }

        FormRow {
            width: parent.width
            visible: card.presenter.models.length > 0
            label: "Model"

            Picker {
                width: Math.min(320, parent.width)
                title: "Model"
                labels: card.presenter.models
                currentIndex: card.presenter.modelIndex
                onPicked: index => card.presenter.pickModel(index)
            }
        }

        FormRow {
            width: parent.width
            label: "Custom model ID"

            ModelField {
                width: Math.min(320, parent.width)
                presenter: card.presenter
            }
        }
    }
}
