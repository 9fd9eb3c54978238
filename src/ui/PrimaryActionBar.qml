import QtQuick
import Velarc

// Run, and how runs start by themselves.
Row {
    id: bar

    property bool isAutomationSheetPresented: false

    spacing: Theme.space3

    Button {
        kind: Button.Prominent
        symbol: "play.fill"
        text: "Run"
        focusPolicy: Qt.TabFocus
        tip: "Run the selected action"
        shortcutText: "Ctrl+Return"
        onClicked: Screens.home.run()
    }

    Button {
        symbol: "sparkles"
        text: "Automation"
        focusPolicy: Qt.TabFocus
        onClicked: bar.isAutomationSheetPresented = true
    }

    SheetSlot {
        presented: bar.isAutomationSheetPresented
        sheet: "AutomationSheet"
        onDismissed: bar.isAutomationSheetPresented = false
    }
}
