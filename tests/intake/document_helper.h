#pragma once

// The real helper program, as the tests of documents run it.

#include "intake/document_process.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>

namespace velarc {

[[nodiscard]] inline DocumentOutcome converted(const QStringList &arguments,
    const QByteArray &input, std::chrono::milliseconds bound = std::chrono::minutes(2))
{
    return runDocumentHelper(QStringLiteral(VELARC_DOCUMENTS), {arguments, input, {bound}}, {});
}

// The picture of a drawing.
[[nodiscard]] inline DocumentOutcome drawn(const QByteArray &svg,
    std::chrono::milliseconds bound = std::chrono::minutes(1), int side = 1024)
{
    const QString pixels = QString::number(side);
    return converted({QStringLiteral("svg-png"), QStringLiteral("--width"), pixels,
                         QStringLiteral("--height"), pixels},
        svg, bound);
}

// What another program prints; "" if it fails.
[[nodiscard]] inline QByteArray saidBy(
    const QString &program, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool isDone = process.waitForFinished(120'000) && process.exitCode() == 0;
    return isDone ? process.readAllStandardOutput() : QByteArray();
}

} // namespace velarc
