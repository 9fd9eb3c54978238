import QtQuick
import QtQuick.Window
import Velarc

// A symbol in one colour. It is decoration: the control that it stands in has the name.
Image {
    id: icon

    property string symbol
    property color color: Theme.text
    property int size: Theme.symbolSize
    readonly property int pixels: Math.ceil(size * Screen.devicePixelRatio)

    width: size
    height: size
    sourceSize.width: pixels
    sourceSize.height: pixels
    source: symbol === "" ? "" : Symbols.url(symbol, color)
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
