#include "intake/documents/written_line.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-font.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

namespace velarc {

namespace {

// What stands invisibly below a colour glyph; about as wide as one.
constexpr const char *kPlaceholder = "\u2014";

double inPoints(int pangoUnits)
{
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

bool isInColour(PangoFont *font)
{
    FcBool isColour = FcFalse;
    return PANGO_IS_FC_FONT(font)
        && FcPatternGetBool(pango_fc_font_get_pattern(PANGO_FC_FONT(font)), FC_COLOR, 0, &isColour)
        == FcResultMatch
        && isColour != FcFalse;
}

// One user-perceived character: its bytes in the text of the run, its glyphs in logical order.
struct Letter
{
    int bytes = 0;
    int glyphs = 0;
    int width = 0;
};

class Run
{
public:
    Run(cairo_t *cairo, PangoLayout *layout, PangoGlyphItem *run)
        : m_cairo(cairo)
        , m_layout(layout)
        , m_text(pango_layout_get_text(layout))
        , m_run(run)
        , m_own(m_text + run->item->offset, static_cast<std::size_t>(run->item->length))
        , m_isBackward(run->item->analysis.level % 2 != 0)
    {
    }

    // Draws from the point; gives the width.
    double write(double x, double y)
    {
        const bool isAscii = std::all_of(
            m_own.begin(), m_own.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
        if (isAscii || !writeLetters(x, y)) {
            cairo_move_to(m_cairo, x, y);
            pango_cairo_show_glyph_item(m_cairo, m_text, m_run);
        }
        return inPoints(pango_glyph_string_get_width(m_run->glyphs));
    }

private:
    cairo_t *m_cairo;
    PangoLayout *m_layout;
    const char *m_text;
    PangoGlyphItem *m_run;
    std::string_view m_own;
    bool m_isBackward;

    [[nodiscard]] int glyphAt(int logical) const
    {
        return m_isBackward ? m_run->glyphs->num_glyphs - 1 - logical : logical;
    }

    // By byte of the run: whether a letter begins there.
    [[nodiscard]] std::vector<bool> beginnings() const
    {
        int count = 0;
        const PangoLogAttr *attributes = pango_layout_get_log_attrs_readonly(m_layout, &count);
        attributes += g_utf8_pointer_to_offset(m_text, m_own.data());
        std::vector<bool> begins(m_own.size() + 1, false);
        const char *const end = m_own.data() + m_own.size();
        for (const char *at = m_own.data(); at < end; at = g_utf8_next_char(at)) {
            begins[static_cast<std::size_t>(at - m_own.data())] =
                (attributes++)->is_cursor_position != 0;
        }
        begins[0] = true;
        return begins;
    }

    [[nodiscard]] std::vector<Letter> letters() const
    {
        const std::vector<bool> begins = beginnings();
        const PangoGlyphString &glyphs = *m_run->glyphs;
        std::vector<Letter> found;
        int begin = 0;
        for (int logical = 0; logical < glyphs.num_glyphs; ++logical) {
            const int at = glyphs.log_clusters[glyphAt(logical)];
            if (found.empty() || (at > begin && begins[static_cast<std::size_t>(at)])) {
                if (!found.empty()) {
                    found.back().bytes = at - begin;
                }
                begin = found.empty() ? 0 : at;
                found.emplace_back();
            }
            ++found.back().glyphs;
            found.back().width += glyphs.glyphs[glyphAt(logical)].geometry.width;
        }
        if (!found.empty()) {
            found.back().bytes = static_cast<int>(m_own.size()) - begin;
        }
        return found;
    }

    // Pango writes each glyph or cluster of glyphs by itself. False where that is all there is to
    // do.
    bool writeLetters(double x, double y)
    {
        const std::vector<Letter> own = letters();
        if (isInColour(m_run->item->analysis.font)) {
            writeTextBelow(own, x, y);
            return false;
        }
        const bool hasParts = std::any_of(
            own.begin(), own.end(), [](const Letter &letter) { return letter.glyphs > 1; });
        return hasParts && writeWhole(own, x, y);
    }

    bool writeWhole(const std::vector<Letter> &own, double x, double y)
    {
        std::vector<cairo_glyph_t> glyphs;
        for (int index = 0; index < m_run->glyphs->num_glyphs; ++index) {
            const PangoGlyphInfo &info = m_run->glyphs->glyphs[index];
            if (info.glyph == PANGO_GLYPH_EMPTY || (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0) {
                return false; // no ink, or a box with the number of the letter
            }
            glyphs.push_back({info.glyph, x + inPoints(info.geometry.x_offset),
                y + inPoints(info.geometry.y_offset)});
            x += inPoints(info.geometry.width);
        }
        show(m_run->item->analysis.font, glyphs, own, m_own);
        return true;
    }

    void show(PangoFont *font, const std::vector<cairo_glyph_t> &glyphs,
        const std::vector<Letter> &own, std::string_view text)
    {
        std::vector<cairo_text_cluster_t> clusters;
        for (const Letter &letter : own) {
            clusters.push_back({letter.bytes, letter.glyphs});
        }
        cairo_set_scaled_font(m_cairo, pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font)));
        cairo_show_text_glyphs(m_cairo, text.data(), static_cast<int>(text.size()), glyphs.data(),
            static_cast<int>(glyphs.size()), clusters.data(), static_cast<int>(clusters.size()),
            m_isBackward ? CAIRO_TEXT_CLUSTER_FLAG_BACKWARD : cairo_text_cluster_flags_t{});
    }

    // White on white, and the picture covers it.
    void writeTextBelow(const std::vector<Letter> &own, double x, double y)
    {
        PangoFont *font = pango_context_load_font(
            pango_layout_get_context(m_layout), pango_layout_get_font_description(m_layout));
        cairo_scaled_font_t *scaled = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font));
        cairo_glyph_t *placeholder = nullptr;
        int count = 0;
        cairo_scaled_font_text_to_glyphs(
            scaled, 0, 0, kPlaceholder, -1, &placeholder, &count, nullptr, nullptr, nullptr);
        if (count == 1) {
            cairo_save(m_cairo);
            cairo_set_source_rgb(m_cairo, 1, 1, 1);
            std::size_t begin = 0;
            for (const Letter &letter : own) {
                show(font, {{placeholder->index, x, y}}, {{letter.bytes, 1, 0}},
                    m_own.substr(begin, static_cast<std::size_t>(letter.bytes)));
                begin += static_cast<std::size_t>(letter.bytes);
                x += inPoints(letter.width);
            }
            cairo_restore(m_cairo);
        }
        cairo_glyph_free(placeholder);
        g_object_unref(font);
    }
};

} // namespace

void writeLine(cairo_t *cairo, PangoLayout *layout, PangoLayoutLine *line, double x, double y)
{
    for (const GSList *run = line->runs; run != nullptr; run = run->next) {
        x += Run(cairo, layout, static_cast<PangoGlyphItem *>(run->data)).write(x, y);
    }
}

} // namespace velarc
