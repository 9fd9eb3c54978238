#pragma once

// Copying by a program that ends right after it: what it copied must stay to be had.

#include "intake/clipboard_writing.h"
#include "intake/copied_thing.h"

#include <QCoroTask>

#include <functional>
#include <optional>
#include <stop_token>

namespace velarc {

// Takes what a run copies, until somebody brings it to a clipboard. Main thread only.
class PendingCopy final : public ClipboardWriting
{
public:
    void writeText(const QString &text) override;
    void writeImage(const QByteArray &png) override;

    // The latest; none from then on.
    [[nodiscard]] std::optional<CopiedThing> take();

private:
    std::optional<CopiedThing> m_copied;
};

enum class CopyOutcome
{
    NothingToCopy,
    Copied,
    NoClipboard
};

using FinishCopying = std::function<QCoro::Task<CopyOutcome>(std::stop_token)>;

// Has the running window copy what is pending; where there is none, a process of its own that keeps
// it, on an X server.
//
// Main thread only. Never starts the window. Stop: CancellationError.
[[nodiscard]] QCoro::Task<CopyOutcome> copyPending(
    std::shared_ptr<PendingCopy> pending, std::stop_token stop);

} // namespace velarc
