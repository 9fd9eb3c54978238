#pragma once

// Has the helper program convert a document, so that a hostile one can cost time but never the
// program.

#include "base/worker.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <stop_token>

namespace velarc {

// What the caller allows, beside the limits that the helper sets itself.
struct DocumentBounds
{
    std::chrono::milliseconds time; // by the clock on the wall
    qsizetype outputBytes = qsizetype(1) << 30;
};

struct DocumentJob
{
    QStringList arguments;
    QByteArray input;
    DocumentBounds bounds;
};

enum class DocumentEnd
{
    Done,
    Failed, // the helper said so, or it was ended by one of its own limits
    CutByBound, // the caller's bounds were hit
    NotStarted, // there is no helper to be had
};

struct DocumentOutcome
{
    DocumentEnd end = DocumentEnd::NotStarted;
    QByteArray output; // what came before the end, whatever the end was
    QString message; // what the helper said of a failure
};

// One conversion at a time, off the main thread.
//
// Main thread only. Stop: kills the helper at once; CancellationError, from the event loop.
class DocumentProcess
{
public:
    // `program` is the helper's file.
    explicit DocumentProcess(QString program);

    [[nodiscard]] QCoro::Task<DocumentOutcome> run(DocumentJob job, std::stop_token stop);

private:
    QString m_program;
    SerialWorker m_worker;
};

// Where the helper lies, seen from the running program.
[[nodiscard]] QString documentHelperPath();

// Runs the helper to its end on the calling thread, which is not the main one.
[[nodiscard]] DocumentOutcome runDocumentHelper(
    const QString &program, const DocumentJob &job, const std::stop_token &stop);

} // namespace velarc
