#pragma once

// Results as PDF files, made by the helper program.

#include "intake/document_process.h"
#include "intake/pdf_exporting.h"

namespace velarc {

// What a PDF of that title is called: slashes and colons become hyphens, and a random part keeps
// two exports apart. A name too long for a file system is cut between two characters.
[[nodiscard]] QString pdfFileName(const QString &title, const QUuid &uuid);

// The file lies in the temporary directory, its user's alone, and stays there.
class PdfExport final : public PdfExporting
{
public:
    explicit PdfExport(QString helper = documentHelperPath(),
        std::chrono::milliseconds bound = std::chrono::seconds(240));

    // A helper that is dead, missing or late is contextUnavailable, a full disk is writeFailed.
    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
