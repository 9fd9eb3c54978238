import Velarc

// All actions, to find and manage.
Sheet {
    id: sheet

    title: "Manage Actions"
    preferredWidth: 520
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }
}
