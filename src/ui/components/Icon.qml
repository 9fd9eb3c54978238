import QtQuick
import QtQuick.Window
import Velarc

// A symbol in one colour. It is decoration: the control that it stands in has the name.
Image {
    id: icon

    property string symbol
    property color color: Theme.text
    property int size: Theme.symbolSize

    width: size
    height: size
    sourceSize: Qt.size(size * Screen.devicePixelRatio, size * Screen.devicePixelRatio)
    source: symbol === "" ? "" : Symbols.url(symbol, color)
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
