#pragma once

// The clipboard by way of a helper program, for programs that draw nothing themselves: they are
// spared the loading of what draws, and need not stay for as long as what they copied is wanted.

#include "base/worker.h"
#include "intake/clipboard_reading.h"
#include "intake/copied_thing.h"

#include <QString>

namespace velarc {

// Where the helper lies, seen from the running program.
[[nodiscard]] QString clipboardHelperPath();

// Has the helper put it on the clipboard of the X server that the environment names, and stay until
// somebody else copies something. Whether it is there now.
//
// Any thread but the main one. Stop: kills the helper if it has not copied yet.
[[nodiscard]] bool keepOnClipboard(
    const QString &program, const CopiedThing &thing, const std::stop_token &stop);

// Gives the text alone: no files, no pictures. Without an X server it is empty.
class ClipboardProcess final : public ClipboardReading
{
public:
    explicit ClipboardProcess(QString program);

    [[nodiscard]] QCoro::Task<ClipboardPayload> read(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QString> text(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) override;

private:
    QString m_program;
    SerialWorker m_worker;
};

} // namespace velarc
