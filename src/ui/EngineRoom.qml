import Velarc

// The settings: connections, the default engine, and what is rarely needed. It stands in a sheet and
// in a window of its own.
ScrollArea {
    padding: Theme.space5

    Label {
        style: Label.ScreenTitle
        text: "Engine Room"
    }
}
