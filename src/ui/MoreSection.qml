import QtQuick
import Velarc

// A group of the More sheet.
Column {
    id: section

    property string title

    SectionHeader {
        width: section.width
        leftPadding: Theme.space3
        bottomPadding: Theme.space1
        text: section.title
    }
}
