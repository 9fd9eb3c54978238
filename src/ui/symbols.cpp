#include "ui/symbols.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct Symbol
{
    std::u16string_view name;
    const char *file; // a drawing in icons/, without its ending
};

// By name, for the search.
constexpr std::array kSymbols{
    Symbol{u"airplane", "airplane-fill"},
    Symbol{u"apple.logo", "laptop-fill"},
    Symbol{u"arrow.clockwise", "arrow-clockwise"},
    Symbol{u"arrow.triangle.merge", "git-merge"},
    Symbol{u"bolt.fill", "lightning-fill"},
    Symbol{u"bolt.shield.fill", "shield-check-fill"},
    Symbol{u"book.closed.fill", "book-fill"},
    Symbol{u"bookmark.fill", "bookmark-simple-fill"},
    Symbol{u"briefcase.fill", "briefcase-fill"},
    Symbol{u"calendar", "calendar"},
    Symbol{u"calendar.badge.clock", "clock-countdown"},
    Symbol{u"calendar.badge.plus", "calendar-plus"},
    Symbol{u"camera.fill", "camera-fill"},
    Symbol{u"cart.fill", "shopping-cart-fill"},
    Symbol{u"chart.bar.doc.horizontal", "chart-bar-horizontal"},
    Symbol{u"chart.bar.fill", "chart-bar-fill"},
    Symbol{u"checklist.checked", "list-checks"},
    Symbol{u"checkmark", "check"},
    Symbol{u"checkmark.circle.fill", "check-circle-fill"},
    Symbol{u"chevron.down", "caret-down"},
    Symbol{u"chevron.left", "caret-left"},
    Symbol{u"chevron.left.forwardslash.chevron.right", "code"},
    Symbol{u"chevron.right", "caret-right"},
    Symbol{u"circle", "circle"},
    Symbol{u"clock.fill", "clock-fill"},
    Symbol{u"cpu.fill", "cpu-fill"},
    Symbol{u"dial.high.fill", "gauge-fill"},
    Symbol{u"diamond.fill", "diamond-fill"},
    Symbol{u"doc.on.doc", "copy"},
    Symbol{u"doc.richtext", "file-pdf"},
    Symbol{u"doc.text.fill", "file-text-fill"},
    Symbol{u"doc.text.magnifyingglass", "file-magnifying-glass"},
    Symbol{u"dollarsign.circle.fill", "currency-circle-dollar-fill"},
    Symbol{u"ellipsis.circle", "dots-three-circle"},
    Symbol{u"envelope", "envelope-simple"},
    Symbol{u"envelope.badge.fill", "mailbox-fill"},
    Symbol{u"envelope.fill", "envelope-fill"},
    Symbol{u"exclamationmark.triangle.fill", "warning-fill"},
    Symbol{u"face.smiling", "smiley"},
    Symbol{u"flag.fill", "flag-fill"},
    Symbol{u"flame.fill", "flame-fill"},
    Symbol{u"folder", "folder"},
    Symbol{u"folder.fill", "folder-fill"},
    Symbol{u"fork.knife.circle.fill", "fork-knife-fill"},
    Symbol{u"gearshape.2", "gear-six"},
    Symbol{u"gift.fill", "gift-fill"},
    Symbol{u"globe", "globe"},
    Symbol{u"graduationcap.fill", "graduation-cap-fill"},
    Symbol{u"hammer.fill", "hammer-fill"},
    Symbol{u"heart.fill", "heart-fill"},
    Symbol{u"house.fill", "house-fill"},
    Symbol{u"info.circle.fill", "info-fill"},
    Symbol{u"key.fill", "key-fill"},
    Symbol{u"leaf.fill", "leaf-fill"},
    Symbol{u"lightbulb.max.fill", "lightbulb-filament-fill"},
    Symbol{u"link", "link"},
    Symbol{u"list.bullet.rectangle.portrait.fill", "clipboard-text-fill"},
    Symbol{u"lock.fill", "lock-fill"},
    Symbol{u"magnifyingglass", "magnifying-glass"},
    Symbol{u"mappin", "map-pin-fill"},
    Symbol{u"message.fill", "chat-circle-fill"},
    Symbol{u"mic.fill", "microphone-fill"},
    Symbol{u"music.note", "music-note-fill"},
    Symbol{u"paintbrush.fill", "paint-brush-fill"},
    Symbol{u"paperplane.fill", "paper-plane-tilt-fill"},
    Symbol{u"pencil", "pencil-simple"},
    Symbol{u"person.2.fill", "users-fill"},
    Symbol{u"person.crop.circle.badge.checkmark", "user-circle-check"},
    Symbol{u"person.fill", "user-fill"},
    Symbol{u"phone.fill", "phone-fill"},
    Symbol{u"photo", "image"},
    Symbol{u"pin", "push-pin"},
    Symbol{u"pin.fill", "push-pin-fill"},
    Symbol{u"play.fill", "play-fill"},
    Symbol{u"plus", "plus"},
    Symbol{u"slider.horizontal.3", "sliders-horizontal"},
    Symbol{u"sparkles", "sparkle"},
    Symbol{u"sparkles.rectangle.stack.fill", "stack-fill"},
    Symbol{u"square.and.arrow.up", "export"},
    Symbol{u"square.grid.2x2", "squares-four"},
    Symbol{u"square.grid.2x2.fill", "squares-four-fill"},
    Symbol{u"star.fill", "star-fill"},
    Symbol{u"sun.max.fill", "sun-fill"},
    Symbol{u"tag.fill", "tag-fill"},
    Symbol{u"terminal.fill", "terminal-window-fill"},
    Symbol{u"text.quote", "quotes"},
    Symbol{u"timer.circle.fill", "timer-fill"},
    Symbol{u"translate", "translate"},
    Symbol{u"trash", "trash"},
    Symbol{u"tray.full.fill", "tray-fill"},
    Symbol{u"wand.and.stars", "magic-wand"},
    Symbol{u"xmark", "x"},
    Symbol{u"xmark.circle", "x-circle"},
    Symbol{u"xmark.circle.fill", "x-circle-fill"},
};

static_assert(std::is_sorted(kSymbols.begin(), kSymbols.end(),
    [](const Symbol &left, const Symbol &right) { return left.name < right.name; }));

constexpr QStringView kFilled = u".fill";

const Symbol *find(QStringView text)
{
    const std::u16string_view name(text.utf16(), static_cast<std::size_t>(text.size()));
    const auto found = std::lower_bound(kSymbols.begin(), kSymbols.end(), name,
        [](const Symbol &symbol, std::u16string_view wanted) { return symbol.name < wanted; });
    return found != kSymbols.end() && found->name == name ? &*found : nullptr;
}

} // namespace

QString iconFile(QStringView symbolName)
{
    const Symbol *symbol = find(symbolName);
    if (symbol == nullptr) {
        symbol = symbolName.endsWith(kFilled)
            ? find(symbolName.chopped(kFilled.size()))
            : find(QString(symbolName.toString() + kFilled.toString()));
    }
    return symbol == nullptr ? u"shapes"_s : QString::fromLatin1(symbol->file);
}

QStringList knownSymbols()
{
    QStringList names;
    for (const Symbol &symbol : kSymbols) {
        names.append(QStringView(symbol.name).toString());
    }
    return names;
}

QUrl SymbolImages::url(const QString &symbolName, const QColor &color)
{
    return QUrl(
        u"image://icon/"_s + iconFile(symbolName) + u'/' + color.name(QColor::HexArgb).mid(1));
}

} // namespace velarc
