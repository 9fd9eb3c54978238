import QtQuick
import Velarc

// What to run, and on what.
Column {
    id: view

    readonly property HomePresenter presenter: Screens.home
    property real availableHeight: 0

    spacing: Theme.space4

    ActionCard {
        id: action

        width: parent.width
        visible: view.presenter.isNewRunExperience
    }

    Loader {
        id: banner

        width: parent.width
        active: view.presenter.isNewRunExperience && view.presenter.suggestedEngine !== ""
        visible: active
        source: "ConnectionBanner.qml"
    }

    Loader {
        id: strip

        width: parent.width
        active: !view.presenter.isNewRunExperience
        visible: active
        source: "PinnedActionStrip.qml"
    }

    // It takes what the others leave.
    InputCard {
        width: parent.width
        availableHeight: view.availableHeight - view.takenBy(action) - view.takenBy(banner)
                         - view.takenBy(strip) - view.takenBy(bar)
    }

    PrimaryActionBar {
        id: bar

        width: parent.width
    }

    function takenBy(item: Item): real {
        return item.visible ? item.height + spacing : 0;
    }
}
