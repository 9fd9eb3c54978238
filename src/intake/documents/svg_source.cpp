#include "intake/documents/svg_source.h"

#include "intake/documents/conversions.h"
#include "intake/documents/drop_shadow.h"
#include "intake/documents/nested_drawings.h"
#include "intake/documents/svg_root.h"

#include <glib.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>

namespace velarc {

namespace {

constexpr std::size_t kMostInflated = std::size_t{64} << 20;
constexpr std::string_view kGzip = "\x1f\x8b";
constexpr int kGzipWindow = 15 + 16;

bool startsWith(std::string_view bytes, std::string_view start)
{
    return bytes.substr(0, start.size()) == start;
}

// What can be inflated of the first member; a stream that breaks off gives what came before.
std::string inflated(std::string_view bytes)
{
    z_stream stream = {};
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<uInt>(std::min<std::size_t>(bytes.size(), kMostInflated));
    if (inflateInit2(&stream, kGzipWindow) != Z_OK) {
        throw ConversionFailure("the drawing cannot be inflated");
    }
    std::string out;
    std::array<char, 64 * 1024> piece{};
    int status = Z_OK;
    while (status == Z_OK && out.size() <= kMostInflated) {
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = static_cast<uInt>(piece.size());
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(piece.data(), piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    if (out.size() > kMostInflated) {
        throw ConversionFailure("the drawing is too large once it is inflated");
    }
    return out;
}

struct ByteMark
{
    std::string_view start;
    const char *encoding;
};

// How the first bytes of a text tell an encoding in which ASCII is not one byte a character.
constexpr std::array<ByteMark, 6> kByteMarks{{
    {std::string_view("\xFF\xFE\0\0", 4), "UTF-32LE"},
    {std::string_view("\0\0\xFE\xFF", 4), "UTF-32BE"},
    {"\xFF\xFE", "UTF-16LE"},
    {"\xFE\xFF", "UTF-16BE"},
    {std::string_view("<\0", 2), "UTF-16LE"},
    {std::string_view("\0<", 2), "UTF-16BE"},
}};

// The value of `encoding` in the XML declaration, or "".
std::string declaredEncoding(std::string_view text)
{
    if (!startsWith(text, "<?xml")) {
        return {};
    }
    const std::string_view declaration = text.substr(0, text.find("?>"));
    const std::size_t name = declaration.find("encoding");
    const std::size_t open =
        name == std::string_view::npos ? name : declaration.find_first_of("\"'", name);
    if (open == std::string_view::npos) {
        return {};
    }
    const std::size_t close = declaration.find(declaration[open], open + 1);
    return std::string(declaration.substr(open + 1, close - open - 1));
}

// The text in UTF-8 without its declaration, which would tell another encoding; none if it is not
// in `encoding`.
std::string inUtf8(std::string_view text, const char *encoding)
{
    gsize length = 0;
    const std::unique_ptr<char, decltype(&g_free)> converted(
        g_convert(text.data(), static_cast<gssize>(text.size()), "UTF-8", encoding, nullptr,
            &length, nullptr),
        &g_free);
    if (converted == nullptr) {
        return {};
    }
    std::string_view utf8(converted.get(), length);
    if (startsWith(utf8, "\xEF\xBB\xBF")) {
        utf8.remove_prefix(3);
    }
    const std::size_t end = startsWith(utf8, "<?xml") ? utf8.find("?>") : std::string_view::npos;
    return std::string(end == std::string_view::npos ? utf8 : utf8.substr(end + 2));
}

// The renderer knows few encodings by itself; those that shift (ISO-2022) hide tags in plain ASCII.
std::string decoded(std::string_view text)
{
    const auto mark = std::find_if(kByteMarks.begin(), kByteMarks.end(),
        [&](const ByteMark &known) { return startsWith(text, known.start); });
    const std::string encoding = mark != kByteMarks.end() ? mark->encoding : declaredEncoding(text);
    const bool isUtf8 = encoding.empty() || g_ascii_strcasecmp(encoding.c_str(), "UTF-8") == 0;
    std::string converted = isUtf8 ? std::string() : inUtf8(text, encoding.c_str());
    return converted.empty() ? std::string(text) : converted;
}

std::string asOfABrowser(std::string_view svg)
{
    return withRootOfABrowser(withShadowsSpelledOut(svg));
}

} // namespace

std::string preparedSvg(std::string_view bytes)
{
    const std::string text = decoded(startsWith(bytes, kGzip) ? inflated(bytes) : bytes);
    // The renderer would inflate once more, and that without a cap.
    return startsWith(text, kGzip) ? std::string()
                                   : withNestedDrawingsEnlarged(asOfABrowser(text), &asOfABrowser);
}

} // namespace velarc
