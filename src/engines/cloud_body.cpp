#include "engines/cloud_body.h"

#include <array>
#include <cstddef>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBytesAGroup = 3;
constexpr qsizetype kLettersAGroup = 4;
constexpr int kBitsALetter = 6;
constexpr unsigned kLetterMask = 0x3F;

// What stands around a prompt and around an attachment in any body.
constexpr qsizetype kRoomForFrame = 256;

constexpr std::array kBase64Letters =
    std::to_array("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");

// The letters of twelve bits, so that a group takes two look-ups.
struct LetterPair
{
    char first;
    char second;
};
constexpr std::size_t kPairs = std::size_t(1) << (2 * kBitsALetter);
constexpr std::array<LetterPair, kPairs> kLetterPairs = [] {
    std::array<LetterPair, kPairs> pairs{};
    for (std::size_t bits = 0; bits < kPairs; ++bits) {
        pairs[bits] = {kBase64Letters[bits >> kBitsALetter], kBase64Letters[bits & kLetterMask]};
    }
    return pairs;
}();

unsigned byteAt(const char *bytes, qsizetype index)
{
    return static_cast<unsigned char>(bytes[index]);
}

char *writePair(char *letters, unsigned twelveBits)
{
    const LetterPair pair = kLetterPairs[twelveBits];
    *letters++ = pair.first;
    *letters++ = pair.second;
    return letters;
}

// One or two bytes, padded.
void writeLastGroup(char *letters, QByteArrayView bytes)
{
    const unsigned first = byteAt(bytes.data(), 0);
    const unsigned second = bytes.size() > 1 ? byteAt(bytes.data(), 1) : 0;
    letters = writePair(letters, (first << 4) | (second >> 4));
    *letters++ = bytes.size() > 1 ? kBase64Letters[(second << 2) & kLetterMask] : '=';
    *letters = '=';
}

qsizetype base64Size(qsizetype bytes)
{
    return (bytes + kBytesAGroup - 1) / kBytesAGroup * kLettersAGroup;
}

// The letter behind the backslash of a short escape; 0 where there is none.
char escapeLetter(char character)
{
    switch (character) {
    case '"':
    case '\\':
        return character;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

bool needsEscape(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

void appendEscaped(QByteArray &body, char character)
{
    constexpr std::array kHexDigits = std::to_array("0123456789abcdef");
    if (const char letter = escapeLetter(character)) {
        body += '\\';
        body += letter;
    } else {
        const auto code = static_cast<unsigned char>(character);
        body += "\\u00";
        body += kHexDigits[code >> 4];
        body += kHexDigits[code & 0xF];
    }
}

} // namespace

void appendJsonString(QByteArray &body, QStringView text)
{
    body += '"';
    appendJsonCharacters(body, text);
    body += '"';
}

void appendJsonCharacters(QByteArray &body, QStringView text)
{
    const QByteArray utf8 = text.toUtf8();
    qsizetype from = 0;
    for (qsizetype at = 0; at < utf8.size(); ++at) {
        if (needsEscape(utf8[at])) {
            body += QByteArrayView(utf8).sliced(from, at - from);
            appendEscaped(body, utf8[at]);
            from = at + 1;
        }
    }
    body += QByteArrayView(utf8).sliced(from);
}

void appendBase64(QByteArray &body, QByteArrayView bytes)
{
    const qsizetype before = body.size();
    body.resize(before + base64Size(bytes.size()));
    char *letters = body.data() + before;
    const char *from = bytes.data();
    const qsizetype grouped = bytes.size() / kBytesAGroup * kBytesAGroup;
    for (const char *end = from + grouped; from != end; from += kBytesAGroup) {
        const unsigned group = (byteAt(from, 0) << 16) | (byteAt(from, 1) << 8) | byteAt(from, 2);
        letters = writePair(letters, group >> (2 * kBitsALetter));
        letters = writePair(letters, group & (kPairs - 1));
    }
    if (grouped < bytes.size()) {
        writeLastGroup(letters, bytes.sliced(grouped));
    }
}

QString sentMimeType(const InputAttachment &attachment)
{
    // A drawing travels as the picture that was made of it.
    return attachment.kind == InputAttachmentKind::Svg ? u"image/png"_s : attachment.mimeType;
}

QByteArray roomForBody(QStringView prompt, const QList<InputAttachment> &attachments)
{
    qsizetype size = prompt.size() + kRoomForFrame;
    for (const InputAttachment &attachment : attachments) {
        size += base64Size(attachment.bytes.size()) + kRoomForFrame;
    }
    QByteArray body;
    body.reserve(size);
    return body;
}

} // namespace velarc
