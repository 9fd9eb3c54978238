pragma ComponentBehavior: Bound

import QtQuick
import Velarc

// What is rarely needed: the on-device model, a reset of all actions, and a word on API keys.
Column {
    id: section

    property EngineRoomPresenter presenter: Screens.engineRoom(section)

    spacing: 14

    Card {
        width: parent.width

        Row {
            width: parent.width
            spacing: Theme.space2

            Icon {
                id: logo

                anchors.verticalCenter: parent.verticalCenter
                symbol: "apple.logo"
                size: 18
            }

            Label {
                width: parent.width - logo.width - parent.spacing
                style: Label.CardTitle
                text: "Apple Intelligence"
            }
        }

        Column {
            width: parent.width
            spacing: 2

            Label {
                width: parent.width
                font.weight: Font.Medium
                text: section.presenter.onDeviceTitle
            }

            Label {
                width: parent.width
                style: Label.Caption
                secondary: true
                text: section.presenter.onDeviceDetails
            }
        }

        SwitchRow {
            width: parent.width
            title: "Enable Apple Intelligence in this app"
            isOn: section.presenter.isOnDeviceEnabled
            onToggled: section.presenter.toggleOnDevice()
        }

        FormRow {
            width: parent.width
            label: "Use case"

            SegmentedPicker {
                width: Math.min(360, Math.max(parent.width, 0))
                title: "Use case"
                labels: section.presenter.useCases
                currentIndex: section.presenter.useCase
                onPicked: index => section.presenter.pickUseCase(index)
            }
        }
    }

    Card {
        width: parent.width

        Label {
            width: parent.width
            style: Label.CardTitle
            text: "Bulk Behavior"
        }

        Label {
            width: parent.width
            secondary: true
            text: "Reset existing actions so they inherit the Default Engine."
        }

        Button {
            kind: Button.Prominent
            tint: "#6366F1"
            text: "Apply Default Engine to All Actions"
            onClicked: section.presenter.applyDefaultToAllActions()
        }
    }

    Card {
        width: parent.width

        Label {
            width: parent.width
            style: Label.CardTitle
            text: "Connection Notes"
        }

        Label {
            width: parent.width
            secondary: true
            text: "OpenAI, Gemini, and Anthropic API access requires provider API keys. ChatGPT, Gemini app plans, and Claude subscriptions are separate from API billing."
        }
    }
}
