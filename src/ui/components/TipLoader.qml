import QtQuick
import QtQuick.Templates as T
import Velarc

// Makes a control's tip when the pointer or the keyboard first comes to it.
Loader {
    id: loader

    required property T.Control control
    property string text
    property string shortcutText
    readonly property bool wanted: text !== "" && (control.hovered || control.visualFocus)

    active: false
    onWantedChanged: if (wanted) {
        active = true;
    }
    // qmllint disable unqualified
    sourceComponent: Tip {
        parent: loader.control
        text: loader.shortcutText === "" ? loader.text : loader.text + "  " + loader.shortcutText
        wanted: loader.wanted
    }
    // qmllint enable unqualified
}
