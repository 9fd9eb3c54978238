import QtQuick
import Velarc

// The frame around all screens: the sidebar, the home screen beside it, and the sheets over both.
FocusScope {
    id: shell

    readonly property ShellPresenter presenter: Screens.shell
    readonly property bool isProcessing: Screens.home.phase === HomePresenter.Processing

    // What the keyboard does everywhere, but for under a sheet.
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: !shell.presenter.hasSheet && !shell.isProcessing
        onActivated: Screens.home.run()
    }

    Shortcut {
        sequence: "Ctrl+Shift+V"
        enabled: !shell.presenter.hasSheet && !shell.isProcessing
        onActivated: Screens.canvas.paste()
    }

    Shortcut {
        sequence: "Escape"
        enabled: !shell.presenter.hasSheet && shell.isProcessing
        onActivated: Screens.home.cancel()
    }

    Shortcut {
        sequence: "Ctrl+N"
        enabled: !shell.presenter.hasSheet
        onActivated: shell.presenter.newAction()
    }

    Shortcut {
        sequence: "Ctrl+K"
        enabled: !shell.presenter.hasSheet
        onActivated: shell.presenter.openActionLibrary()
    }

    Shortcut {
        sequence: "Ctrl+,"
        onActivated: shell.presenter.isSettingsPresented = true
    }

    Sidebar {
        id: sidebar

        width: Math.round(Math.max(220,
            Math.min(280 * Theme.textScale, shell.width * 0.22 * Theme.textScale, shell.width * 0.35)))
        height: shell.height
    }

    Rectangle {
        id: divider

        x: sidebar.width
        width: 1
        height: shell.height
        color: Theme.hairline
    }

    HomeScreen {
        x: divider.x + divider.width
        width: shell.width - x
        height: shell.height
        focus: true
    }

    SheetSlot {
        presented: shell.presenter.isMoreSheetPresented
        sheet: "MoreSheet"
        onDismissed: shell.presenter.isMoreSheetPresented = false
    }

    SheetSlot {
        presented: shell.presenter.isStudioPresented
        sheet: "ActionStudio"
        onDismissed: shell.presenter.isStudioPresented = false
    }

    SheetSlot {
        presented: shell.presenter.isInputModalPresented
        sheet: "InputModal"
        onDismissed: Screens.canvas.dismissInputModal()
    }

    SheetSlot {
        presented: shell.presenter.isActionLibraryPresented
        sheet: "ActionLibrarySheet"
        onDismissed: shell.presenter.isActionLibraryPresented = false
    }

    SheetSlot {
        presented: shell.presenter.isEngineRoomPresented
        sheet: "EngineRoomSheet"
        onDismissed: shell.presenter.isEngineRoomPresented = false
    }

    SheetSlot {
        presented: shell.presenter.isUsagePresented
        sheet: "UsageSheet"
        onDismissed: shell.presenter.isUsagePresented = false
    }

    SheetSlot {
        presented: shell.presenter.isProviderConnectPresented
        sheet: "ProviderConnectSheet"
        onDismissed: shell.presenter.isProviderConnectPresented = false
    }
}
