pragma ComponentBehavior: Bound

import QtQuick
import Velarc

// The cloud engines: how each stands, and the commands to connect it and to take it off.
Card {
    id: card

    property EngineRoomPresenter presenter: Screens.engineRoom(card)

    spacing: Theme.space4

    Label {
        width: parent.width
        style: Label.CardTitle
        text: "Provider Connections"
    }

    Repeater {
        model: card.presenter.connections

        ConnectionItem {
            required property string provider
            required property int index
            required colorHex
            required symbol
            required name
            required subtitle
            required badge
            required status
            required isConnected

            width: parent?.width ?? 0
            separated: index > 0
            onConnectRequested: card.presenter.connectEngine(provider)
            onDisconnectRequested: card.presenter.disconnectEngine(provider)
        }
    }
}
