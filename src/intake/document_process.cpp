#include "intake/document_process.h"

#include "intake/child_process.h"

#include <QCoreApplication>
#include <QDir>

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

DocumentProcess::DocumentProcess(QString program) : m_program(std::move(program)) {}

QCoro::Task<DocumentOutcome> DocumentProcess::run(DocumentJob job, std::stop_token stop)
{
    auto work = [program = m_program, job = std::move(job)](const std::stop_token &token) {
        return runDocumentHelper(program, job, token);
    };
    return m_worker.run(std::move(work), std::move(stop));
}

QString documentHelperPath()
{
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(u"../libexec/velarc/velarc-documents"_s);
}

DocumentOutcome runDocumentHelper(
    const QString &program, const DocumentJob &job, const std::stop_token &stop)
{
    DocumentOutcome outcome;
    ChildProcess child(program, job.arguments);
    if (!child.isRunning()) {
        return outcome;
    }
    const std::stop_callback onStop(stop, [&child] { child.kill(); });
    const bool isWhole = child.converse(job.input, job.bounds.time, job.bounds.outputBytes);
    if (!isWhole) {
        child.kill();
    }
    const bool isDone = child.waitForSuccess();
    outcome.end = !isWhole ? DocumentEnd::CutByBound
        : isDone           ? DocumentEnd::Done
                           : DocumentEnd::Failed;
    outcome.output = child.takeOutput();
    outcome.message = QString::fromUtf8(child.complaint()).trimmed();
    return outcome;
}

} // namespace velarc
