#include "run/windowless_seams.h"

#include "records/run_errors.h"

namespace velarc {

QCoro::Task<ClipboardPayload> EmptyClipboard::read(std::stop_token)
{
    co_return ClipboardPayload();
}

QCoro::Task<QString> EmptyClipboard::text(std::stop_token)
{
    co_return QString();
}

QCoro::Task<AttachmentIntake> EmptyClipboard::attachments(ClipboardPayload, std::stop_token)
{
    co_return AttachmentIntake();
}

QCoro::Task<RoutedExecutionResult> ShowOnlyDelivery::routeResult(
    Delivery delivery, std::shared_ptr<RunProgress>, std::stop_token)
{
    RoutedExecutionResult routed;
    routed.payload = std::move(delivery.payload);
    co_return routed;
}

QCoro::Task<QUrl> ShowOnlyDelivery::exportPDF(QString, QString, std::stop_token)
{
    throw PDFExportServiceError::contextUnavailable();
    co_return QUrl();
}

bool ShowOnlyDelivery::copyToClipboard(const ResultPayload &)
{
    return false;
}

void ShowOnlyDelivery::showClipboardToast(QString) {}

} // namespace velarc
