#pragma once

// What stands in for the desktop in a program that has none at hand.

#include "intake/clipboard_writing.h"
#include "intake/file_intake.h"
#include "run/canvas_events.h"
#include "run/result_delivery.h"

namespace velarc {

// A clipboard on which nothing ever stands, and which takes nothing.
class EmptyClipboard final
    : public ClipboardReading
    , public ClipboardTextSeen
    , public ClipboardWriting
{
public:
    [[nodiscard]] QCoro::Task<ClipboardPayload> read(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QString> text(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) override;
    [[nodiscard]] QString cachedText() const override;
    void writeText(const QString &text) override;
    void writeImage(const QByteArray &png) override;
};

// Takes no files.
class NoFiles final : public FileIntake
{
public:
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachmentsFromFiles(
        QList<QUrl> urls, std::stop_token stop) const override;
};

// Writes no PDF and says so.
class NoPdfExport final : public PdfExporting
{
public:
    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;
};

} // namespace velarc
