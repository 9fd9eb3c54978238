pragma Singleton

import QtQuick
import Velarc

// Every colour, distance, radius, font size and duration of the screens.
QtObject {
    readonly property bool dark: Screens.appearance.isDark

    // The product's own colours.
    readonly property list<color> canvasGradient: dark ? ["#09090B", "#0C0A1A", "#09090B"]
                                                       : ["#FAFAFA", "#F5F3FF", "#FAFAFA"]
    readonly property color accent: "#6366F1"
    readonly property color inputBorderDropTargeted: "#6366F1"
    readonly property color inputBorder: dark ? Qt.rgba(1, 1, 1, 0.08) : "#E5E7EB"
    readonly property color dropGlow: dark ? Qt.rgba(0x63 / 255, 0x66 / 255, 0xF1 / 255, 0.35)
                                           : Qt.rgba(0x63 / 255, 0x66 / 255, 0xF1 / 255, 0.2)
    readonly property int dropGlowRadius: 22
    readonly property list<color> wordmarkGradient: dark ? ["#A5B4FC", "#818CF8"]
                                                         : ["#312E81", "#4F46E5"]
    readonly property list<color> wordmarkBadgeGradient: dark ? ["#F06A4D", "#C94D33"]
                                                              : ["#E86546", "#CF5134"]
    readonly property color wordmarkBadgeText: "#F9FAFB"
    readonly property color editorBackground: dark ? "#111827" : "#FFFFFF"
    readonly property color warningFill: "#FEF3C7"
    readonly property color warningStroke: "#F59E0B"
    readonly property color warningText: "#7C2D12"
    readonly property color warningAction: "#D97706"
    readonly property color attachmentChip: "#EEF2FF"
    readonly property color success: "#10B981"
    readonly property color issue: "#EF4444"

    // Text. Each stands out from every ground below by 4.5 to 1 or more.
    readonly property color text: dark ? "#F4F4F5" : "#18181B"
    readonly property color secondaryText: dark ? "#A8A8B3" : "#52525B"
    readonly property color placeholderText: dark ? "#9CA3AF" : "#6B6B76"
    readonly property color disabledText: dark ? "#7C7C88" : "#8A8A94"
    readonly property color accentText: dark ? "#A5B4FC" : "#4F46E5"
    readonly property color textOnAccent: "#FFFFFF"
    readonly property color textOnWarning: "#291404"
    readonly property color chipText: "#312E81"
    readonly property color successText: dark ? "#34D399" : "#047857"
    readonly property color issueText: dark ? "#FCA5A5" : "#B91C1C"
    readonly property color warningBadgeText: dark ? "#FCD34D" : "#92400E"

    // Grounds.
    readonly property color sidebarGround: dark ? "#0F0E18" : "#F2F0FA"
    readonly property color cardTop: dark ? "#1A1926" : "#FFFFFF"
    readonly property color cardBottom: dark ? "#161521" : "#FDFDFF"
    readonly property color sheetGround: dark ? "#161521" : "#FCFCFE"
    readonly property color popupGround: dark ? "#211F2E" : "#FFFFFF"
    readonly property color well: dark ? "#0F0F18" : "#F7F7FB"
    readonly property color hairline: dark ? Qt.rgba(1, 1, 1, 0.10) : "#E4E4EC"
    readonly property color scrim: dark ? Qt.rgba(0, 0, 0, 0.55) : Qt.rgba(0.09, 0.08, 0.18, 0.32)
    readonly property color shadow: Qt.rgba(0.04, 0.03, 0.12, dark ? 0.55 : 0.22)

    // Controls at rest, under the pointer, pressed.
    readonly property color control: dark ? Qt.rgba(1, 1, 1, 0.07) : "#FFFFFF"
    readonly property color controlHover: dark ? Qt.rgba(1, 1, 1, 0.12) : "#F3F3FA"
    readonly property color controlPressed: dark ? Qt.rgba(1, 1, 1, 0.17) : "#E8E8F3"
    readonly property color controlBorder: dark ? Qt.rgba(1, 1, 1, 0.14) : "#D9D9E3"
    readonly property color hover: dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0.1, 0.08, 0.3, 0.05)
    readonly property color pressed: dark ? Qt.rgba(1, 1, 1, 0.11) : Qt.rgba(0.1, 0.08, 0.3, 0.10)
    readonly property color selection: dark ? Qt.rgba(0x63 / 255, 0x66 / 255, 0xF1 / 255, 0.30)
                                            : Qt.rgba(0x63 / 255, 0x66 / 255, 0xF1 / 255, 0.16)
    readonly property color focusRing: dark ? "#A5B4FC" : "#4F46E5"

    // Distances.
    readonly property int space1: 4
    readonly property int space2: 8
    readonly property int space3: 12
    readonly property int space4: 16
    readonly property int space5: 20
    readonly property int space6: 24
    readonly property int space8: 32

    readonly property int controlHeight: Math.max(32, Math.round(32 * textScale))
    readonly property int contentWidth: 860
    readonly property int hitArea: 32

    readonly property int controlRadius: 10
    readonly property int chipRadius: 12
    readonly property int cardRadius: 16
    readonly property int sheetRadius: 20

    // Type.
    readonly property real textScale: Screens.appearance.textScale
    readonly property int captionSize: Math.round(12 * textScale)
    readonly property int bodySize: Math.round(13 * textScale)
    readonly property int readingSize: Math.round(14 * textScale)
    readonly property int cardTitleSize: Math.round(15 * textScale)
    readonly property int sheetTitleSize: Math.round(18 * textScale)
    readonly property int screenTitleSize: Math.round(22 * textScale)
    readonly property int symbolSize: Math.round(16 * textScale)
    readonly property real readingLineHeight: 1.4
    readonly property string monospace: "monospace"

    // Motion.
    readonly property int quick: Screens.appearance.reducesMotion ? 0 : 120
    readonly property int gentle: Screens.appearance.reducesMotion ? 0 : 180

    // A colour of an action or engine, readable as a symbol on the grounds of this appearance.
    function symbolColor(color: color): color {
        if (dark && color.hslLightness < 0.55) {
            return Qt.hsla(color.hslHue, color.hslSaturation, 0.68, 1);
        }
        if (!dark && color.hslLightness > 0.62) {
            return Qt.hsla(color.hslHue, color.hslSaturation, 0.45, 1);
        }
        return color;
    }

    function withOpacity(color: color, opacity: real): color {
        return Qt.rgba(color.r, color.g, color.b, color.a * opacity);
    }
}
