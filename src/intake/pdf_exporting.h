#pragma once

// Writing a text as a PDF file, as whoever delivers results sees it.

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <stop_token>

namespace velarc {

class PdfExporting
{
public:
    virtual ~PdfExporting() = default;

    // Writes `text` as a PDF under `title` and gives the file. Errors: PDFExportServiceError.
    //
    // Stop: CancellationError, from the event loop.
    [[nodiscard]] virtual QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) = 0;
};

} // namespace velarc
