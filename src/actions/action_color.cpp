#include "actions/action_color.h"

#include "base/text.h"
#include "base/uuid.h"

#include <array>
#include <cstdint>

namespace velarc {

namespace {

constexpr qsizetype kHexLength = 6;
constexpr std::uint64_t kFallbackColor = 0x2563EB;

struct PaletteRow
{
    const char16_t *name;
    const char16_t *hex;
};

constexpr std::array kPalette{
    PaletteRow{u"Ocean", u"2563EB"},
    PaletteRow{u"Emerald", u"059669"},
    PaletteRow{u"Sunset", u"EA580C"},
    PaletteRow{u"Crimson", u"DC2626"},
    PaletteRow{u"Purple", u"9333EA"},
    PaletteRow{u"Teal", u"0D9488"},
    PaletteRow{u"Slate", u"334155"},
};

bool isPair(QChar high, QChar low)
{
    return high.isHighSurrogate() && low.isLowSurrogate();
}

// How many units the mark at an end of `text` takes; 0 for a letter, a digit or an empty text.
qsizetype leadingMark(QStringView text)
{
    if (text.size() > 1 && isPair(text[0], text[1])) {
        return QChar::isLetterOrNumber(QChar::surrogateToUcs4(text[0], text[1])) ? 0 : 2;
    }
    return text.isEmpty() || text.front().isLetterOrNumber() ? 0 : 1;
}

qsizetype trailingMark(QStringView text)
{
    const qsizetype size = text.size();
    if (size > 1 && isPair(text[size - 2], text[size - 1])) {
        return leadingMark(text.right(2));
    }
    return leadingMark(text.right(1));
}

QStringView withoutMarks(QStringView text)
{
    while (const qsizetype mark = leadingMark(text)) {
        text = text.mid(mark);
    }
    while (const qsizetype mark = trailingMark(text)) {
        text.chop(mark);
    }
    return text;
}

int hexDigit(QChar character)
{
    const char16_t unit = character.unicode();
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    if (unit >= u'a' && unit <= u'f') {
        return unit - u'a' + 10;
    }
    return unit >= u'A' && unit <= u'F' ? unit - u'A' + 10 : -1;
}

// The leading run of hexadecimal digits, an "0x" before it allowed; 0 where there is none. The
// text is six characters long at most, so nothing overflows.
std::uint64_t leadingHexNumber(QStringView text)
{
    const bool marked =
        text.startsWith(u"0x", Qt::CaseInsensitive) && text.size() > 2 && hexDigit(text[2]) >= 0;
    std::uint64_t value = 0;
    for (const QChar character : marked ? text.mid(2) : text) {
        const int digit = hexDigit(character);
        if (digit < 0) {
            break;
        }
        value = value * 16 + static_cast<std::uint64_t>(digit);
    }
    return value;
}

ActionColor colorFromNumber(std::uint64_t value)
{
    const auto channel = [](std::uint64_t bits) { return static_cast<double>(bits) / 255.0; };
    return ActionColor{channel(value >> 16), channel((value >> 8) & 0xFF), channel(value & 0xFF)};
}

} // namespace

const QList<ActionColorOption> &actionColorPalette()
{
    static const QList<ActionColorOption> kOptions = [] {
        QList<ActionColorOption> options;
        for (const PaletteRow &row : kPalette) {
            options.append({newUuid(), QString::fromUtf16(row.name), QString::fromUtf16(row.hex)});
        }
        return options;
    }();
    return kOptions;
}

ActionColor colorFromHex(QStringView text)
{
    const QStringView digits = withoutMarks(text);
    if (characterCount(digits) != kHexLength) {
        return colorFromNumber(kFallbackColor);
    }
    return colorFromNumber(leadingHexNumber(digits));
}

} // namespace velarc
