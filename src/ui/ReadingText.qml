import QtQuick
import Velarc

// A result's text, in lines that are short enough to be read.
Item {
    id: reader

    property alias text: body.text
    property alias lineLimit: body.lineLimit
    property alias isCut: body.isCut

    implicitHeight: body.implicitHeight

    FontMetrics {
        id: metrics

        font: body.font
    }

    LongText {
        id: body

        width: Math.min(reader.width, Math.ceil(80 * metrics.averageCharacterWidth))
        font.pixelSize: Theme.readingSize
    }
}
