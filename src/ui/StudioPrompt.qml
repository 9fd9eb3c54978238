import QtQuick
import Velarc

// The action's prompt template, and what it can name.
FormSection {
    id: section

    readonly property StudioPresenter presenter: Screens.studio

    title: "System Prompt"

    TextEditor {
        width: parent.width
        minimumHeight: 180
        accessibleName: "System Prompt"
        font.family: Theme.monospace
        text: section.presenter.prompt
        onTextChanged: section.presenter.prompt = text
    }

    Label {
        style: Label.Caption
        secondary: true
        text: "Variables"
    }

    Flow {
        width: parent.width
        spacing: Theme.space2

        Repeater {
            model: section.presenter.variables

            Chip {
                required property string modelData

                text: modelData
                font.family: Theme.monospace
                onClicked: Screens.studio.addVariable(modelData)
            }
        }
    }
}
