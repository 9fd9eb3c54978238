#include "entry/copying.h"

#include "base/worker.h"
#include "entry/bus_client.h"
#include "intake/clipboard_process.h"

#include <utility>

namespace velarc {

void PendingCopy::writeText(const QString &text)
{
    m_copied = CopiedThing{CopiedThing::Kind::Text, text.toUtf8()};
}

void PendingCopy::writeImage(const QByteArray &png)
{
    m_copied = CopiedThing{CopiedThing::Kind::Picture, png};
}

std::optional<CopiedThing> PendingCopy::take()
{
    return std::exchange(m_copied, std::nullopt);
}

QCoro::Task<CopyOutcome> copyPending(std::shared_ptr<PendingCopy> pending, std::stop_token stop)
{
    auto copied = pending->take();
    if (!copied) {
        co_return CopyOutcome::NothingToCopy;
    }
    auto work = [thing = *std::move(copied)](const std::stop_token &token) {
        return copyInWindow(thing) == WindowReply::Done
            || keepOnClipboard(clipboardHelperPath(), thing, token);
    };
    SerialWorker worker;
    const bool isCopied = co_await worker.run(std::move(work), std::move(stop));
    co_return isCopied ? CopyOutcome::Copied : CopyOutcome::NoClipboard;
}

} // namespace velarc
