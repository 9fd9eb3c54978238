pragma ComponentBehavior: Bound

import QtQuick
import Velarc

// A grid of engines of which one is chosen. `cards` are rows of ProviderCard; a press or an arrow
// key only says which engine is wanted, and whoever owns `cards` selects it.
FocusScope {
    id: picker

    required property RowModel cards
    property bool includeSubtitle: true
    property string title: "Engine" // its name; not shown
    property int minimumCardWidth: Math.round(170 * Math.max(1, Theme.textScale))
    readonly property int columns: Math.max(1,
        Math.floor((width + grid.spacing) / (minimumCardWidth + grid.spacing)))

    // `provider` as the row has it.
    signal picked(string provider)

    implicitWidth: 3 * minimumCardWidth + 2 * grid.spacing
    implicitHeight: grid.implicitHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Grid {
        id: grid

        columns: picker.columns
        spacing: 10

        Repeater {
            id: repeater

            model: picker.cards

            ProviderCardTile {
                required property int index
                required property string provider
                required property string label
                required colorHex
                required symbol
                required subtitle
                required status
                required isSelected

                width: Math.floor((picker.width - (picker.columns - 1) * grid.spacing)
                                  / picker.columns)
                height: picker.rowHeight(Math.floor(index / picker.columns), repeater.count)
                text: label
                includeSubtitle: picker.includeSubtitle
                entersByTab: isSelected || (index === 0 && !picker.hasSelection(repeater.count))
                onClicked: picker.picked(provider)
                onStepped: by => picker.step(index + by)
                onRowStepped: by => picker.step(index + by * picker.columns)
            }
        }
    }

    function tile(index: int): ProviderCardTile {
        return repeater.itemAt(index) as ProviderCardTile;
    }

    function rowHeight(row: int, count: int): real {
        let tallest = 0;
        for (let at = row * columns; at < Math.min(count, (row + 1) * columns); ++at) {
            tallest = Math.max(tallest, tile(at)?.implicitHeight ?? 0);
        }
        return tallest;
    }

    function hasSelection(count: int): bool {
        for (let at = 0; at < count; ++at) {
            if (tile(at)?.isSelected ?? false) {
                return true;
            }
        }
        return false;
    }

    // As among radio buttons, the arrow keys choose.
    function step(index: int) {
        const next = tile(index);
        if (next !== null) {
            next.forceActiveFocus(Qt.TabFocusReason);
            next.clicked();
        }
    }
}
