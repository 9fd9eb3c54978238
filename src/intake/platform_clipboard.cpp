#include "intake/platform_clipboard.h"

#include "base/errors.h"
#include "base/worker.h"
#include "intake/clipboard_forms.h"
#include "intake/clipboard_pictures.h"
#include "intake/wayland_selection.h"
#include "intake/x_selection.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QTimer>
#include <QVariant>
#include <QWindow>

namespace velarc {

using namespace Qt::StringLiterals;

struct PlatformClipboard::Members
{
    QClipboard *clipboard = nullptr;
    std::shared_ptr<const AttachmentReader> attachments;
    std::shared_ptr<TaskScope> scope;
    SelectionBounds bounds;
    WaylandSeat *seat = nullptr; // in a Wayland session
    QString cachedText;
    std::stop_source refresh; // of the read that fills it

    // Two, so that a paste does not wait behind the text that is being cached.
    std::shared_ptr<SerialWorker> reads = std::make_shared<SerialWorker>();
    std::shared_ptr<SerialWorker> refreshes = std::make_shared<SerialWorker>();
};

namespace {

using SharedMembers = std::shared_ptr<PlatformClipboard::Members>;

bool isOnX()
{
    return QGuiApplication::platformName() == "xcb"_L1;
}

// A picture that is unpacked only if somebody asks for another format than the one it has. On X Qt
// offers the formats that it can write; on Wayland it would encode the picture anew, as PNG too and
// on the main thread, for whoever pastes it.
class CopiedPicture final : public QMimeData
{
public:
    explicit CopiedPicture(const QByteArray &png) { setData(kPng, png); }

    [[nodiscard]] QStringList formats() const override
    {
        return {kPng, isOnX() ? kImageObject : kBmp};
    }

protected:
    [[nodiscard]] QVariant retrieveData(const QString &name, QMetaType type) const override
    {
        if (name != kImageObject && name != kBmp) {
            return QMimeData::retrieveData(name, type);
        }
        const QImage image = QImage::fromData(QMimeData::retrieveData(kPng, type).toByteArray());
        if (name == kImageObject) {
            return image;
        }
        QBuffer bitmap;
        image.save(&bitmap, "BMP");
        return bitmap.data();
    }

private:
    inline static const QString kPng = u"image/png"_s;
    inline static const QString kBmp = u"image/bmp"_s;
    inline static const QString kImageObject = u"application/x-qt-image"_s; // Qt's own name of it
};

// What a read takes from the forms, and which of them it needs for that.
template <typename Result> struct FormReading
{
    QStringList (*wanted)(const QStringList &offered);
    Result (*make)(ClipboardForms &forms);
};
constexpr FormReading<ClipboardPayload> kPayloadReading{&wantedForms, &payloadFrom};
constexpr FormReading<QString> kTextReading{&wantedTextForms, &textFrom};

HeldClipboardForms formsOf(const QMimeData *data, QStringList (*wanted)(const QStringList &offered))
{
    HeldClipboardForms held;
    if (data != nullptr) {
        const QStringList names = wanted(data->formats());
        for (const QString &name : names) {
            held.forms.insert(name, data->data(name));
        }
    }
    return held;
}

template <typename Result>
QCoro::Task<Result> readForms(SharedMembers members, std::shared_ptr<SerialWorker> worker,
    FormReading<Result> reading, std::stop_token stop)
{
    if (isOnX()) { // what is our own, too: the event loop hands it out
        auto work = [reading, bounds = members->bounds](const std::stop_token &stopped) {
            XSelection forms(stopped, bounds);
            return reading.make(forms);
        };
        co_return co_await worker->run(std::move(work), std::move(stop));
    }
    if (members->seat != nullptr && !members->clipboard->ownsClipboard()) {
        auto work = [reading, seat = members->seat, bounds = members->bounds](
                        const std::stop_token &stopped) {
            WaylandSelection forms(*seat, stopped, bounds);
            return reading.make(forms);
        };
        co_return co_await worker->run(std::move(work), std::move(stop));
    }
    auto work = [reading, held = formsOf(members->clipboard->mimeData(), reading.wanted)](
                    const std::stop_token &) mutable { return reading.make(held); };
    co_return co_await worker->run(std::move(work), std::move(stop));
}

QCoro::Task<void> keepText(SharedMembers members, std::stop_source stop)
{
    const auto ticket = members->scope->enter(stop);
    try {
        QString text =
            co_await readForms(members, members->refreshes, kTextReading, stop.get_token());
        throwIfStopped(stop.get_token());
        members->cachedText = std::move(text);
    } catch (const CancellationError &) {
        // A later read keeps the text instead.
    }
}

} // namespace

PlatformClipboard::PlatformClipboard(QClipboard *clipboard,
    std::shared_ptr<const AttachmentReader> attachments, std::shared_ptr<TaskScope> scope,
    SelectionBounds bounds)
    : m_members(std::make_shared<Members>())
{
    m_members->clipboard = clipboard;
    m_members->attachments = std::move(attachments);
    m_members->scope = std::move(scope);
    m_members->bounds = bounds;
    m_members->seat = WaylandSeat::ofThisSession();
    limitPictureMemory();
    QObject::connect(
        clipboard, &QClipboard::dataChanged, &m_connections, [this] { refreshCachedText(); });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &m_connections,
        [this](const QWindow *focused) {
            if (focused != nullptr) {
                refreshCachedText();
            }
        });
    refreshCachedText();
}

PlatformClipboard::~PlatformClipboard()
{
    m_members->refresh.request_stop();
}

void PlatformClipboard::refreshCachedText()
{
    m_members->refresh.request_stop();
    m_members->refresh = std::stop_source();
    keepText(m_members, m_members->refresh);
}

QCoro::Task<ClipboardPayload> PlatformClipboard::read(std::stop_token stop)
{
    return readForms(m_members, m_members->reads, kPayloadReading, std::move(stop));
}

QCoro::Task<QString> PlatformClipboard::text(std::stop_token stop)
{
    return readForms(m_members, m_members->reads, kTextReading, std::move(stop));
}

QCoro::Task<AttachmentIntake> PlatformClipboard::attachments(
    ClipboardPayload payload, std::stop_token stop)
{
    return m_members->attachments->attachmentsFromPayload(std::move(payload), std::move(stop));
}

const QString &PlatformClipboard::cachedText() const
{
    return m_members->cachedText;
}

// The server refuses who dates a claim before the last one, and Qt dates it by the newest event
// that it has seen. Where another program copied a moment ago, that event is yet to be seen: the
// next turn of the event loop brings it.
void PlatformClipboard::put(std::shared_ptr<const DataMaking> make, int attemptsLeft)
{
    const quint64 write = ++m_writes;
    QMimeData *data = (*make)().release(); // the clipboard owns it
    m_members->clipboard->setMimeData(data);
    if (!isOnX() || m_members->clipboard->mimeData() == data || attemptsLeft == 0) {
        return;
    }
    QTimer::singleShot(0, &m_connections, [this, make, write, attemptsLeft] {
        if (write == m_writes) {
            put(make, attemptsLeft - 1);
        }
    });
}

void PlatformClipboard::writeText(const QString &text)
{
    put(std::make_shared<const DataMaking>([text] {
        auto data = std::make_unique<QMimeData>();
        data->setText(text);
        return data;
    }));
}

void PlatformClipboard::writeImage(const QByteArray &png)
{
    put(std::make_shared<const DataMaking>([png]() -> std::unique_ptr<QMimeData> {
        if (isPicture(png)) {
            return std::make_unique<CopiedPicture>(png);
        }
        auto data = std::make_unique<QMimeData>();
        data->setData(u"image/png"_s, png);
        return data;
    }));
}

void PlatformClipboard::write(const ResultPayload &payload)
{
    if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        writeImage(image->png);
    } else if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        writeText(pdf->url.toLocalFile());
    } else {
        writeText(std::get<TextPayload>(payload).text);
    }
}

} // namespace velarc
