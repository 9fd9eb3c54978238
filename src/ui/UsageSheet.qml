import QtQuick
import Velarc

// The tokens of today.
Sheet {
    id: sheet

    readonly property UsagePresenter presenter: Screens.usage

    title: "Usage"
    preferredWidth: 520
    preferredHeight: 600
    commands: Button {
        text: "Close"
        focus: true
        onClicked: sheet.close()
    }

    ScrollArea {
        anchors.top: parent?.top
        anchors.bottom: reset.top
        anchors.bottomMargin: Theme.space3
        width: parent?.width ?? 0
        padding: Theme.space5
        topPadding: Theme.space1

        Column {
            width: parent.width
            spacing: Theme.space1

            Label {
                style: Label.ScreenTitle
                text: "Today"
            }

            Label {
                width: parent.width
                style: Label.Caption
                secondary: true
                text: "These totals are local token counts from provider API responses. Reset only clears local counters."
            }
        }

        Row {
            id: tiles

            width: parent.width
            spacing: Theme.space3

            UsageTile {
                width: (tiles.width - 2 * tiles.spacing) / 3
                title: "Input"
                figure: sheet.presenter.input
            }

            UsageTile {
                width: (tiles.width - 2 * tiles.spacing) / 3
                title: "Output"
                figure: sheet.presenter.output
            }

            UsageTile {
                width: (tiles.width - 2 * tiles.spacing) / 3
                title: "Total"
                figure: sheet.presenter.total
            }
        }

        Label {
            width: parent.width
            style: Label.CardTitle
            text: "Today by Provider + Model"
        }

        Column {
            width: parent.width
            visible: list.count === 0
            spacing: Theme.space1

            Label {
                width: parent.width
                font.weight: Font.Medium
                text: "No usage yet today."
            }

            Label {
                width: parent.width
                secondary: true
                text: "Run an action with OpenAI, Gemini, or Anthropic to start tracking token usage."
            }
        }

        Column {
            width: parent.width
            spacing: Theme.space2

            Repeater {
                id: list

                model: sheet.presenter.rows

                UsageRowView {
                    width: parent.width
                }
            }
        }
    }

    Button {
        id: reset

        anchors.bottom: parent?.bottom
        anchors.bottomMargin: Theme.space5
        x: Theme.space5
        width: (parent?.width ?? 0) - 2 * Theme.space5
        kind: Button.Prominent
        tint: "#6366F1"
        text: "Reset Today Usage"
        onClicked: sheet.presenter.reset()
    }
}
