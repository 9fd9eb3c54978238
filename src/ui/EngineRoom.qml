import QtQuick
import Velarc

// The settings: connections, the default engine, and what is rarely needed. It stands in a sheet and
// in a window of its own.
Item {
    implicitHeight: 520
}
