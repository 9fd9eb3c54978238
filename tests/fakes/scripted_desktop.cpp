#include "fakes/scripted_desktop.h"

namespace velarc {

QCoro::Task<AttachmentIntake> ScriptedFiles::attachmentsFromFiles(
    QList<QUrl> urls, std::stop_token stop) const
{
    drops.append(urls);
    const AttachmentIntake result = intake;
    co_await gate.pass(stop);
    co_return result;
}

QCoro::Task<QUrl> ScriptedPdfExport::exportPDF(QString, QString title, std::stop_token stop)
{
    titles.append(title);
    const std::exception_ptr thrown = failure;
    co_await gate.pass(stop);
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    co_return QUrl(QStringLiteral("file:///tmp/result.pdf"));
}

QCoro::Task<SystemActionExecutionResult> ScriptedSystemActions::execute(
    SystemDestinationKind kind, QString text, std::stop_token stop)
{
    kinds.append(kind);
    texts.append(text);
    std::exception_ptr thrown;
    if (!failures.empty()) {
        thrown = failures.front();
        failures.pop_front();
    }
    co_await gate.pass(stop);
    if (thrown) {
        std::rethrow_exception(thrown);
    }
    SystemActionExecutionResult result;
    result.payload = TextPayload{QStringLiteral("did ") + text};
    result.providerLabel = QStringLiteral("Calendar");
    result.debugInfo = GenerationDebugInfo{text, {}, {}};
    co_return result;
}

} // namespace velarc
