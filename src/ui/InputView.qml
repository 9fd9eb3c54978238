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

    ConnectionBanner {
        width: parent.width
        visible: view.presenter.isNewRunExperience && view.presenter.suggestedEngine !== ""
    }

    PinnedActionStrip {
        width: parent.width
        visible: !view.presenter.isNewRunExperience
    }

    InputCard {
        width: parent.width
    }

    PrimaryActionBar {
        width: parent.width
    }
}
