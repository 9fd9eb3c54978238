#pragma once

// The text of PDF files, read by the helper program.

#include "intake/document_process.h"
#include "intake/document_services.h"

namespace velarc {

// The pages of `output`, each ended by a form feed, as one text: every page trimmed, blank ones
// dropped, a blank line between them. None if nothing remains. Pure; any thread.
[[nodiscard]] std::optional<QString> textOfPages(const QByteArray &output);

class PdfTextReader final : public PdfTextReading
{
public:
    explicit PdfTextReader(QString helper = documentHelperPath(),
        std::chrono::milliseconds bound = std::chrono::seconds(240));

    [[nodiscard]] QCoro::Task<PdfText> read(QByteArray pdf, std::stop_token stop) override;

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
