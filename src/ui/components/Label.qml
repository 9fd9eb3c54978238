import QtQuick
import Velarc

// Text that a screen reader finds.
Text {
    id: label

    enum Style {
        Body,
        Caption,
        CardTitle,
        SheetTitle,
        ScreenTitle
    }

    property int style: Label.Body
    property bool secondary: false
    readonly property bool isTitle: style === Label.CardTitle || style === Label.SheetTitle
                                    || style === Label.ScreenTitle

    color: secondary ? Theme.secondaryText : Theme.text
    font.pixelSize: [Theme.bodySize, Theme.captionSize, Theme.cardTitleSize, Theme.sheetTitleSize,
        Theme.screenTitleSize][style]
    font.weight: isTitle ? Font.DemiBold : Font.Normal
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft
    wrapMode: Text.Wrap
    Accessible.role: isTitle ? Accessible.Heading : Accessible.StaticText
    Accessible.name: text
}
