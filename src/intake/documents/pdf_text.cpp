#include "intake/documents/conversions.h"
#include "intake/documents/streams.h"

#include <limits>
#include <memory>
#include <poppler-document.h>
#include <poppler-global.h>
#include <poppler-page.h>

namespace velarc {

namespace {

constexpr char kFormFeed = '\f';
constexpr char32_t kReplacement = 0xFFFD;

bool isHigh(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

void appendUtf8(std::string &out, char32_t code)
{
    const auto tail = [&](int shift) { out += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// The library's own conversion gives nothing at all for a text with half a surrogate pair. A form
// feed inside a page would look like its end.
void appendPage(std::string &out, const poppler::ustring &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (isHigh(code) && i + 1 < text.size() && isLow(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00);
        } else if (isHigh(code) || isLow(code)) {
            code = kReplacement;
        }
        if (code == kFormFeed) {
            code = '\n';
        }
        if (code != 0) {
            appendUtf8(out, code);
        }
    }
}

void stayQuiet(const std::string &, void *) {}

std::unique_ptr<poppler::document> opened(std::string_view pdf)
{
    if (pdf.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw ConversionFailure("the document is too large");
    }
    std::unique_ptr<poppler::document> document(
        poppler::document::load_from_raw_data(pdf.data(), static_cast<int>(pdf.size())));
    if (document == nullptr) {
        throw ConversionFailure("the document cannot be opened");
    }
    if (document->is_locked()) {
        throw ConversionFailure("the document is locked by a password");
    }
    return document;
}

} // namespace

void writePdfText(std::string_view pdf)
{
    poppler::set_debug_error_function(&stayQuiet, nullptr);
    const auto document = opened(pdf);
    std::string text;
    for (int index = 0; index < document->pages(); ++index) {
        text.clear();
        const std::unique_ptr<poppler::page> page(document->create_page(index));
        if (page != nullptr) {
            appendPage(
                text, page->text(poppler::rectf(), poppler::page::non_raw_non_physical_layout));
        }
        text += kFormFeed;
        writeOut(text);
    }
}

} // namespace velarc
