import QtQuick
import Velarc

// A way to share; one that the desktop does not have takes no room.
MenuItem {
    property bool isOffered: true

    visible: isOffered
    height: isOffered ? implicitHeight : 0
}
