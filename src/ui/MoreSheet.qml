import Velarc

// The small menu of the rest of the program.
Sheet {
    id: sheet

    title: "More"
    preferredWidth: 520
    commands: Button {
        text: "Done"
        onClicked: sheet.close()
    }
}
