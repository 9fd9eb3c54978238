#include "intake/documents/png_bytes.h"

#include "intake/documents/conversions.h"

#include <png.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace velarc {

namespace {

constexpr int kFastest = 1;

void append(png_structp png, png_bytep bytes, png_size_t count)
{
    static_cast<std::string *>(png_get_io_ptr(png))->append(reinterpret_cast<char *>(bytes), count);
}

void flushNothing(png_structp) {}

[[noreturn]] void fail(png_structp, png_const_charp message)
{
    throw ConversionFailure(message);
}

void stayQuiet(png_structp, png_const_charp) {}

class Writer
{
public:
    Writer() : m_png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &fail, &stayQuiet))
    {
        m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
        if (m_info == nullptr) {
            throw ConversionFailure("the picture cannot be encoded");
        }
    }
    ~Writer() { png_destroy_write_struct(&m_png, &m_info); }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;

    void write(const PixelRows &pixels, std::string &out)
    {
        png_set_write_fn(m_png, &out, &append, &flushNothing);
        png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(pixels.width),
            static_cast<png_uint_32>(pixels.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
            PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_compression_level(m_png, kFastest);
        png_set_filter(m_png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
        png_write_info(m_png, m_info);
        std::vector<png_byte> row(3 * static_cast<std::size_t>(pixels.width));
        for (int y = 0; y < pixels.height; ++y) {
            fill(row, pixels.first + y * pixels.bytesBetweenRows);
            png_write_row(m_png, row.data());
        }
        png_write_end(m_png, m_info);
    }

private:
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;

    static void fill(std::vector<png_byte> &row, const unsigned char *pixels)
    {
        for (std::size_t at = 0; at < row.size(); at += 3, pixels += 4) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, pixels, sizeof pixel);
            row[at] = static_cast<png_byte>(pixel >> 16);
            row[at + 1] = static_cast<png_byte>(pixel >> 8);
            row[at + 2] = static_cast<png_byte>(pixel);
        }
    }
};

} // namespace

std::string pngOf(const PixelRows &pixels)
{
    std::string out;
    Writer().write(pixels, out);
    return out;
}

} // namespace velarc
