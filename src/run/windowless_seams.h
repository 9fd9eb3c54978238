#pragma once

// What stands in for clipboard and delivery in a program without them.

#include "run/run_seams.h"

namespace velarc {

// A clipboard on which nothing ever stands.
class EmptyClipboard final : public ClipboardReading
{
public:
    [[nodiscard]] QCoro::Task<ClipboardPayload> read(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QString> text(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) override;
};

// Hands every result back as it came: nothing is copied, and no PDF can be written.
class ShowOnlyDelivery final : public Delivering
{
public:
    [[nodiscard]] QCoro::Task<RoutedExecutionResult> routeResult(
        Delivery delivery, std::shared_ptr<RunProgress> progress, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QUrl> exportPDF(
        QString text, QString title, std::stop_token stop) override;
    bool copyToClipboard(const ResultPayload &payload) override;
    void showClipboardToast(QString message) override;
};

} // namespace velarc
