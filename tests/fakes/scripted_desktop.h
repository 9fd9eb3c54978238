#pragma once

// The desktop as delivery and the canvas see it, steered by a test.

#include "fakes/gate.h"
#include "run/canvas_events.h"
#include "run/result_delivery.h"

#include <deque>

namespace velarc {

class RecordedClipboard final : public ClipboardWriting
{
public:
    QStringList texts;
    QList<QByteArray> images;

    void writeText(const QString &text) override { texts.append(text); }
    void writeImage(const QByteArray &png) override { images.append(png); }
};

class FixedClipboardText final : public ClipboardTextSeen
{
public:
    QString seen;
    [[nodiscard]] QString cachedText() const override { return seen; }
};

class ScriptedFiles final : public FileIntake
{
public:
    mutable Gate gate;
    AttachmentIntake intake;
    mutable QList<QList<QUrl>> drops;

    [[nodiscard]] QCoro::Task<AttachmentIntake> attachmentsFromFiles(
        QList<QUrl> urls, std::stop_token stop) const override;
};

class ScriptedPdfExport final : public PdfExporting
{
public:
    Gate gate;
    std::exception_ptr failure;
    QStringList titles;

    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;
};

// Answers "did TEXT" unless a failure is queued for the call.
class ScriptedSystemActions final : public SystemActionExecuting
{
public:
    Gate gate;
    std::deque<std::exception_ptr> failures; // one a call, null for success
    QStringList texts;
    QList<SystemDestinationKind> kinds;

    [[nodiscard]] QCoro::Task<SystemActionExecutionResult> execute(
        SystemDestinationKind kind, QString text, std::stop_token stop) override;
};

} // namespace velarc
