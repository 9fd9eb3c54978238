import Velarc

// What a run left to see.
Card {
    Label {
        style: Label.CardTitle
        text: "Result"
    }
}
