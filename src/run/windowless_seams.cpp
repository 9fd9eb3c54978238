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

QString EmptyClipboard::cachedText() const
{
    return {};
}

void EmptyClipboard::writeText(const QString &) {}

void EmptyClipboard::writeImage(const QByteArray &) {}

QCoro::Task<AttachmentIntake> NoFiles::attachmentsFromFiles(QList<QUrl>, std::stop_token) const
{
    co_return AttachmentIntake();
}

QCoro::Task<QUrl> NoPdfExport::exportPDF(QString, QString, std::stop_token)
{
    throw PDFExportServiceError::contextUnavailable();
    co_return QUrl();
}

} // namespace velarc
