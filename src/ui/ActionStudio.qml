import Velarc

// The editor of one action.
Sheet {
    title: "Action Studio"
    preferredWidth: 680
}
