#include "intake/documents/conversions.h"
#include "intake/documents/plain_text.h"
#include "intake/documents/quiet_log.h"
#include "intake/documents/streams.h"
#include "intake/documents/written_line.h"

#include <pango/pangocairo.h>

#include <cairo-pdf.h>
#include <memory>

namespace velarc {

namespace {

// All in points, from the upper left corner.
constexpr double kPageWidth = 612;
constexpr double kPageHeight = 792;
constexpr double kLeft = 40;
constexpr double kRight = 572;
constexpr double kTitleBaseline = 42;
constexpr double kBodyTop = 66;
constexpr double kLinePitch = 13.8;
constexpr double kAscent = 0.905 * 12; // of the body's type, which sits at the top of its line
constexpr int kLinesOfPage = 49; // down to 752
constexpr double kTitleGrey = 0.1;

// Laying out a paragraph costs more than its length where it has no blanks, so it is done in
// pieces.
constexpr std::size_t kPieceBytes = 1024;
constexpr int kLinesDoneAgain = 2;

struct Release
{
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(PangoFontDescription *font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList *list) const { pango_attr_list_unref(list); }
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t *cairo) const { cairo_destroy(cairo); }
    void operator()(cairo_font_options_t *options) const { cairo_font_options_destroy(options); }
};
template <typename Object> using Owned = std::unique_ptr<Object, Release>;

// Gathers the many small writes of the surface. No exception passes through the library's frames.
class Output
{
public:
    static cairo_status_t take(void *self, const unsigned char *bytes, unsigned int count)
    {
        auto &held = static_cast<Output *>(self)->m_held;
        held.append(reinterpret_cast<const char *>(bytes), count);
        try {
            if (held.size() >= kFull) {
                static_cast<Output *>(self)->flush();
            }
        } catch (const ConversionFailure &) {
            return CAIRO_STATUS_WRITE_ERROR;
        }
        return CAIRO_STATUS_SUCCESS;
    }

    void flush()
    {
        writeOut(m_held);
        m_held.clear();
    }

private:
    static constexpr std::size_t kFull = 64 * 1024;
    std::string m_held;
};

// Distances on paper, not on a grid of pixels.
Owned<PangoContext> paperContext(cairo_t *cairo)
{
    Owned<PangoContext> context(pango_cairo_create_context(cairo));
    const Owned<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_cairo_context_set_resolution(context.get(), 72);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    return context;
}

Owned<PangoLayout> layoutIn(PangoContext *context, const char *font)
{
    Owned<PangoLayout> layout(pango_layout_new(context));
    const Owned<PangoFontDescription> description(pango_font_description_from_string(font));
    pango_layout_set_font_description(layout.get(), description.get());
    return layout;
}

class Pages
{
public:
    Pages(cairo_t *cairo, std::string_view title)
        : m_cairo(cairo)
        , m_context(paperContext(cairo))
        , m_title(layoutIn(m_context.get(), "Helvetica Bold 13"))
        , m_body(layoutIn(m_context.get(), "Helvetica 12"))
    {
        pango_layout_set_single_paragraph_mode(m_title.get(), TRUE);
        pango_layout_set_text(m_title.get(), title.data(), static_cast<int>(title.size()));
        pango_layout_set_width(m_body.get(), static_cast<int>((kRight - kLeft) * PANGO_SCALE));
        pango_layout_set_wrap(m_body.get(), PANGO_WRAP_WORD_CHAR);
        const Owned<PangoAttrList> attributes(pango_attr_list_new());
        pango_attr_list_insert(attributes.get(), pango_attr_insert_hyphens_new(FALSE));
        pango_layout_set_attributes(m_body.get(), attributes.get());
    }

    void write(std::string_view text)
    {
        beginPage();
        while (!text.empty()) {
            const std::size_t end = text.find_first_of("\n\f");
            const bool isLast = end == std::string_view::npos;
            writeParagraph(text.substr(0, end));
            if (!isLast && text[end] == '\f') {
                endPage();
                beginPage();
            }
            text.remove_prefix(isLast ? text.size() : end + 1);
        }
        endPage();
    }

private:
    cairo_t *m_cairo;
    Owned<PangoContext> m_context;
    Owned<PangoLayout> m_title;
    Owned<PangoLayout> m_body;
    PangoDirection m_direction = PANGO_DIRECTION_LTR;
    int m_line = 0; // of the page, from 0

    void beginPage()
    {
        m_line = 0;
        cairo_set_source_rgb(m_cairo, kTitleGrey, kTitleGrey, kTitleGrey);
        velarc::writeLine(m_cairo, m_title.get(), pango_layout_get_line_readonly(m_title.get(), 0),
            kLeft, kTitleBaseline);
        cairo_set_source_rgb(m_cairo, 0, 0, 0);
    }

    void endPage() { cairo_show_page(m_cairo); }

    // The baseline of the next line, on a new page if this one is full.
    double nextBaseline()
    {
        if (m_line == kLinesOfPage) {
            endPage();
            beginPage();
        }
        return kBodyTop + kAscent + kLinePitch * m_line++;
    }

    void writeParagraph(std::string_view paragraph)
    {
        if (paragraph.empty()) {
            (void)nextBaseline();
            return;
        }
        setDirection(Direction::OfText);
        paragraph.remove_prefix(writePiece(paragraph));
        while (!paragraph.empty()) {
            setDirection(Direction::AsBefore);
            paragraph.remove_prefix(writePiece(paragraph));
        }
    }

    // A paragraph has one direction, whatever its later pieces begin with.
    enum class Direction
    {
        OfText,
        AsBefore
    };
    void setDirection(Direction direction)
    {
        const bool isOfText = direction == Direction::OfText;
        if (isOfText == (pango_layout_get_auto_dir(m_body.get()) != FALSE)) {
            return;
        }
        pango_layout_set_auto_dir(m_body.get(), isOfText ? TRUE : FALSE);
        pango_context_set_base_dir(m_context.get(), isOfText ? PANGO_DIRECTION_LTR : m_direction);
        pango_layout_context_changed(m_body.get());
    }

    // Writes the first lines of what is left of a paragraph; gives the bytes that they took. Where
    // the piece is cut out of a longer text its end may break lines and letters otherwise than they
    // do in the whole, so the last lines are left to the next piece.
    std::size_t writePiece(std::string_view rest)
    {
        std::size_t taken = rest.size();
        if (taken > kPieceBytes) {
            taken = kPieceBytes;
            while ((static_cast<unsigned char>(rest[taken]) & 0xC0) == 0x80) {
                --taken;
            }
        }
        pango_layout_set_text(m_body.get(), rest.data(), static_cast<int>(taken));
        int lines = pango_layout_get_line_count(m_body.get());
        if (taken < rest.size() && lines > kLinesDoneAgain) {
            lines -= kLinesDoneAgain;
            taken = static_cast<std::size_t>(
                pango_layout_get_line_readonly(m_body.get(), lines)->start_index);
        }
        m_direction = pango_layout_line_get_resolved_direction(
            pango_layout_get_line_readonly(m_body.get(), 0));
        for (int line = 0; line < lines; ++line) {
            writeLine(pango_layout_get_line_readonly(m_body.get(), line));
        }
        return taken;
    }

    void writeLine(PangoLayoutLine *line)
    {
        double left = kLeft;
        if (m_direction == PANGO_DIRECTION_RTL) {
            PangoRectangle extents = {};
            pango_layout_line_get_extents(line, nullptr, &extents);
            left = kRight - static_cast<double>(extents.width) / PANGO_SCALE;
        }
        velarc::writeLine(m_cairo, m_body.get(), line, left, nextBaseline());
    }
};

} // namespace

void writeTextPdf(std::string_view text, std::string_view title)
{
    silenceLibraries();
    Output output;
    const Owned<cairo_surface_t> surface(
        cairo_pdf_surface_create_for_stream(&Output::take, &output, kPageWidth, kPageHeight));
    const std::string titleLine = lineText(title);
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, titleLine.c_str());
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
    {
        const Owned<cairo_t> cairo(cairo_create(surface.get()));
        Pages(cairo.get(), titleLine).write(pageText(text));
    }
    cairo_surface_finish(surface.get());
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        throw ConversionFailure(cairo_status_to_string(cairo_surface_status(surface.get())));
    }
    output.flush();
}

} // namespace velarc
