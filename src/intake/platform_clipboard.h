#pragma once

// The desktop's clipboard.

#include "base/async.h"
#include "intake/attachments.h"
#include "intake/clipboard_reading.h"
#include "intake/selection_bounds.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QClipboard;
class QMimeData;

namespace velarc {

// Reads and writes what the programs of a session copy to each other.
//
// Main thread only. What was copied is fetched by a worker (see XSelection, WaylandSelection): an
// owner that hangs or sends hundreds of megabytes holds up nothing here, and counts as an empty
// clipboard once `bounds` are over. On other platforms Qt fetches it on the main thread.
//
// Lifetime: what is written stays to be had as long as the application lives. The clipboard must
// outlive this object, tasks that run may outlive it; one that keeps the cached text ends by
// `scope`.
class PlatformClipboard final : public ClipboardReading
{
public:
    PlatformClipboard(QClipboard *clipboard, std::shared_ptr<const AttachmentReader> attachments,
        std::shared_ptr<TaskScope> scope, SelectionBounds bounds = {});
    ~PlatformClipboard() override;
    PlatformClipboard(const PlatformClipboard &) = delete;
    PlatformClipboard &operator=(const PlatformClipboard &) = delete;

    [[nodiscard]] QCoro::Task<ClipboardPayload> read(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<QString> text(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) override;

    // The text as it was when the clipboard last changed or a window of ours last became active,
    // and its owner had answered; "" before that.
    [[nodiscard]] const QString &cachedText() const;

    // Each takes the place of everything on the clipboard.
    void writeText(const QString &text);
    // As a picture if the bytes make one, which other programs may then ask for in other formats;
    // else as they are. The bytes themselves are what is given out as PNG.
    void writeImage(const QByteArray &png);
    // A text, a picture, or the path of a PDF as text.
    void write(const ResultPayload &payload);

    struct Members;

private:
    std::shared_ptr<Members> m_members;
    QObject m_connections; // to signals; they end with this object

    using DataMaking = std::function<std::unique_ptr<QMimeData>()>;
    quint64 m_writes = 0;

    void refreshCachedText();
    void put(std::shared_ptr<const DataMaking> make, int attemptsLeft = 3);
};

} // namespace velarc
