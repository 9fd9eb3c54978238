import Velarc

// The tokens of today.
Sheet {
    id: sheet

    title: "Usage"
    preferredWidth: 520
    commands: Button {
        text: "Close"
        onClicked: sheet.close()
    }
}
