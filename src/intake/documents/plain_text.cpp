#include "intake/documents/plain_text.h"

#include <glib.h>

#include <memory>

namespace velarc {

namespace {

constexpr gunichar kNextLine = 0x85;
constexpr gunichar kLineSeparator = 0x2028;
constexpr gunichar kParagraphSeparator = 0x2029;
constexpr gunichar kVerticalTab = '\v';

bool endsLine(gunichar character)
{
    return character == '\n' || character == '\r' || character == kVerticalTab
        || character == kNextLine || character == kLineSeparator
        || character == kParagraphSeparator;
}

constexpr std::string_view kReplacement = "\uFFFD";

// Code points that stand for no character in any text; the pages' library refuses them.
bool isNoCharacter(gunichar code)
{
    return (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFE) == 0xFFFE;
}

// Calls `take` for each character with the bytes that it is written in; a carriage return with a
// line feed behind it counts as the line feed alone.
template <typename Take> void forEachCharacter(std::string_view text, Take take)
{
    std::string withoutNul(text);
    std::erase(withoutNul, '\0');
    const std::unique_ptr<char, decltype(&g_free)> valid(
        g_utf8_make_valid(withoutNul.data(), static_cast<gssize>(withoutNul.size())), &g_free);
    for (const char *at = valid.get(); *at != '\0';) {
        const char *next = g_utf8_next_char(at);
        if (*at != '\r' || *next != '\n') {
            const gunichar code = g_utf8_get_char(at);
            take(code,
                isNoCharacter(code) ? kReplacement
                                    : std::string_view(at, static_cast<std::size_t>(next - at)));
        }
        at = next;
    }
}

} // namespace

std::string pageText(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    forEachCharacter(text, [&](gunichar character, std::string_view bytes) {
        if (endsLine(character)) {
            out += '\n';
        } else if (!g_unichar_iscntrl(character) || character == '\t' || character == '\f') {
            out += bytes;
        }
    });
    return out;
}

std::string lineText(std::string_view text)
{
    std::string out;
    forEachCharacter(text, [&](gunichar character, std::string_view bytes) {
        if (endsLine(character) || character == '\t' || character == '\f') {
            out += ' ';
        } else if (!g_unichar_iscntrl(character)) {
            out += bytes;
        }
    });
    return out;
}

} // namespace velarc
