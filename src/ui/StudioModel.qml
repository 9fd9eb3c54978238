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

        StudioEngines {}
    }
}
