#pragma once

// What intake asks of documents that come from outside, as narrow interfaces.
//
// Main thread only; none of it blocks.
//
// Stop:     a stopped token ends the wait with CancellationError; the caller resumes from the
//           event loop, never inside request_stop().
// Lifetime: the service must outlive the task; arguments are copied into it.

#include <QByteArray>
#include <QCoroTask>
#include <QSize>
#include <QString>

#include <optional>
#include <stop_token>

namespace velarc {

// The text of a PDF.
struct PdfText
{
    std::optional<QString> text; // trimmed and not blank, or none
    bool isCut = false; // a bound was hit: pages are missing
};

class PdfTextReading
{
public:
    virtual ~PdfTextReading() = default;

    // A document that is damaged, locked or has no text gives none; nothing but CancellationError
    // is thrown.
    [[nodiscard]] virtual QCoro::Task<PdfText> read(QByteArray pdf, std::stop_token stop) = 0;
};

class SvgRasterizing
{
public:
    virtual ~SvgRasterizing() = default;

    // The drawing as a PNG of `size` pixels. Errors: SVGRasterizerError.
    [[nodiscard]] virtual QCoro::Task<QByteArray> rasterize(
        QByteArray svg, QSize size, std::stop_token stop) = 0;
};

} // namespace velarc
