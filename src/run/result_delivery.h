#pragma once

// Takes a result to where its action wants it, and copies and shares what is shown.

#include "base/clock.h"
#include "base/worker.h"
#include "intake/clipboard_writing.h"
#include "intake/pdf_exporting.h"
#include "run/run_seams.h"
#include "system_actions/system_actions.h"

#include <QPointer>

namespace velarc {

class AppState;

struct DeliveryServices
{
    std::shared_ptr<Clock> clock;
    std::shared_ptr<ClipboardWriting> clipboard;
    std::shared_ptr<PdfExporting> pdfExport;
    std::shared_ptr<SystemActionExecuting> systemActions;
    std::shared_ptr<TaskScope> scope;
};

class ResultDelivery final : public Delivering
{
public:
    ResultDelivery(AppState &state, DeliveryServices services);

    // An output destination copies or does nothing, and gives the payload back as it came. A system
    // destination acts on what the engine wrote, or on the user's text where that is blank, and its
    // answer replaces the payload. A calendar operation that could not make sense of the engine's
    // text is tried once more with the user's own.
    [[nodiscard]] QCoro::Task<RoutedExecutionResult> routeResult(
        Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop) override;

    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;

    // The text of a text, the image of an image, the path of a PDF. Always true.
    bool copyToClipboard(const ResultPayload &payload) override;

    // Shows the message for 1.35 s; a later one takes its place and stays its full time.
    void showClipboardToast(QString message) override;

    // Copies the shown result and says so. Without one, nothing.
    void copyResult();

    // A file that holds the shown result: the PDF itself, or a new private file in the temporary
    // directory. None where no result is shown or the file cannot be written.
    [[nodiscard]] QCoro::Task<std::optional<QUrl>> shareableFileURL(std::stop_token stop);

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
