import Velarc

// Takes and verifies the key of an engine.
Sheet {
    title: "Connect"
    preferredWidth: 560
}
