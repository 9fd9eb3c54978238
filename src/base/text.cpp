#include "base/text.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace velarc {

namespace {

constexpr char16_t kLineFeed = 0x000A;
constexpr char16_t kCarriageReturn = 0x000D;
constexpr char16_t kNextLine = 0x0085;
constexpr char16_t kLineSeparator = 0x2028;
constexpr char16_t kParagraphSeparator = 0x2029;

// From here on a character may join the one before it.
constexpr char16_t kFirstNonAscii = 0x0080;

bool endsLine(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= kLineFeed && unit <= kCarriageReturn) || unit == kNextLine
        || unit == kLineSeparator || unit == kParagraphSeparator;
}

// The length of the leading run of `text` in which each unit surely is a character of its own:
// ASCII without carriage returns. The last ASCII unit before anything else stays out, since what
// follows may join it.
qsizetype plainLength(QStringView text, qsizetype limit)
{
    const qsizetype end = std::min(text.size(), limit);
    qsizetype length = 0;
    while (length < end && text[length].unicode() < kFirstNonAscii
        && text[length].unicode() != kCarriageReturn) {
        ++length;
    }
    const bool nextMayJoin =
        length > 0 && length < text.size() && text[length].unicode() >= kFirstNonAscii;
    return nextMayJoin ? length - 1 : length;
}

struct UTextCloser
{
    void operator()(UText *text) const { utext_close(text); }
};

// Walks over the user-perceived characters of a text that it does not copy.
class CharacterWalker
{
public:
    explicit CharacterWalker(QStringView text)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_text.reset(utext_openUChars(nullptr, text.utf16(), text.size(), &status));
        iterator().setText(m_text.get(), status);
        if (U_FAILURE(status)) {
            throw std::runtime_error("character iteration is not available");
        }
    }

    // The end of the next character, or -1 behind the last.
    qsizetype next()
    {
        const int32_t boundary = iterator().next();
        return boundary == icu::BreakIterator::DONE ? -1 : boundary;
    }

private:
    // Making an iterator costs far more than walking a short text, so each thread keeps one.
    static icu::BreakIterator &iterator()
    {
        thread_local const std::unique_ptr<icu::BreakIterator> kIterator = [] {
            UErrorCode status = U_ZERO_ERROR;
            std::unique_ptr<icu::BreakIterator> made(
                icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
            if (U_FAILURE(status) || !made) {
                throw std::runtime_error("character iteration is not available");
            }
            return made;
        }();
        return *kIterator;
    }

    std::unique_ptr<UText, UTextCloser> m_text;
};

} // namespace

QStringView trimmed(QStringView text)
{
    return text.trimmed();
}

bool isBlank(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isSpace(); });
}

QString foldedToLower(QStringView text)
{
    icu::UnicodeString folded(false, text.utf16(), static_cast<int32_t>(text.size()));
    folded.toLower(icu::Locale::getRoot());
    return QString(reinterpret_cast<const QChar *>(folded.getBuffer()), folded.length());
}

qsizetype characterCount(QStringView text)
{
    const qsizetype plain = plainLength(text, text.size());
    if (plain == text.size()) {
        return plain;
    }
    CharacterWalker walker(text.mid(plain));
    qsizetype count = plain;
    while (walker.next() >= 0) {
        ++count;
    }
    return count;
}

QStringView characterPrefix(QStringView text, qsizetype count)
{
    const qsizetype plain = plainLength(text, count);
    if (plain >= count || plain == text.size()) {
        return text.left(std::min(count, text.size()));
    }
    CharacterWalker walker(text.mid(plain));
    qsizetype end = plain;
    for (qsizetype taken = plain; taken < count; ++taken) {
        const qsizetype boundary = walker.next();
        if (boundary < 0) {
            return text;
        }
        end = plain + boundary;
    }
    return text.left(end);
}

QList<QStringView> splitLines(QStringView text)
{
    QList<QStringView> lines;
    qsizetype start = 0;
    for (qsizetype index = 0; index <= text.size(); ++index) {
        if (index < text.size() && !endsLine(text[index])) {
            continue;
        }
        if (index > start) {
            lines.append(text.mid(start, index - start));
        }
        start = index + 1;
    }
    return lines;
}

} // namespace velarc
