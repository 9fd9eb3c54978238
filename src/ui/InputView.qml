import QtQuick
import Velarc

// What to run, and on what.
Column {
    id: view

    readonly property HomePresenter presenter: Screens.home

    spacing: Theme.space4

    ActionCard {
        width: parent.width
        visible: view.presenter.isNewRunExperience
    }

    Loader {
        width: parent.width
        active: view.presenter.isNewRunExperience && view.presenter.suggestedEngine !== ""
        visible: active
        source: "ConnectionBanner.qml"
    }

    Loader {
        width: parent.width
        active: !view.presenter.isNewRunExperience
        visible: active
        source: "PinnedActionStrip.qml"
    }

    InputCard {
        width: parent.width
    }

    PrimaryActionBar {
        width: parent.width
    }
}
