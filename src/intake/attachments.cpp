#include "intake/attachments.h"

#include "base/errors.h"
#include "base/text.h"
#include "base/uuid.h"
#include "base/worker.h"
#include "intake/file_reading.h"

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

struct AttachmentReader::Services
{
    std::shared_ptr<PdfTextReading> pdfTexts;
    std::shared_ptr<SvgRasterizing> drawings;
    std::shared_ptr<SerialWorker> files = std::make_shared<SerialWorker>();
};

namespace {

using SharedServices = std::shared_ptr<const AttachmentReader::Services>;

constexpr QSize kDrawingSize(1024, 1024);

struct FileKind
{
    InputAttachmentKind kind;
    QLatin1StringView extension;
    QLatin1StringView mimeType;
    QLatin1StringView failure; // the file name follows
};
constexpr std::array kFileKinds{
    FileKind{InputAttachmentKind::Image, "png"_L1, "image/png"_L1, "Could not read PNG file: "_L1},
    FileKind{
        InputAttachmentKind::Pdf, "pdf"_L1, "application/pdf"_L1, "Could not read PDF file: "_L1},
    FileKind{
        InputAttachmentKind::Svg, "svg"_L1, "image/png"_L1, "Could not rasterize SVG file: "_L1},
};

const FileKind *kindOf(const QString &extension)
{
    for (const FileKind &kind : kFileKinds) {
        if (extension == kind.extension) {
            return &kind;
        }
    }
    return nullptr;
}

QString lastComponent(const QUrl &url)
{
    return url.adjusted(QUrl::StripTrailingSlash).fileName();
}

// "" for a name that only begins with its dot, as hidden files do, or ends with it.
QString extensionOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? foldedToLower(QStringView(name).sliced(dot + 1)) : QString();
}

// The path byte for byte, since the names of files need not be UTF-8.
QByteArray pathOf(const QUrl &url)
{
    return url.isLocalFile()
        ? QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1())
        : QByteArray();
}

QString unsupportedNotice(const QString &extension, const QString &name)
{
    const QString shown = extension.isEmpty() ? u"unknown"_s : extension;
    return "Unsupported file type: ."_L1 + shown + " ("_L1 + name + ')'_L1;
}

InputAttachment attachmentOf(const FileKind &kind, const QString &name, QByteArray bytes)
{
    InputAttachment attachment;
    attachment.id = newUuid();
    attachment.kind = kind.kind;
    attachment.filename = name;
    attachment.mimeType = kind.mimeType;
    attachment.bytes = std::move(bytes);
    return attachment;
}

QCoro::Task<std::optional<QByteArray>> fileBytes(
    SharedServices services, QUrl url, std::stop_token stop)
{
    auto work = [path = pathOf(url)](const std::stop_token &stopped) {
        try {
            return readRegularFile(path, stopped);
        } catch (const std::bad_alloc &) {
            return std::optional<QByteArray>(); // others than this file may still be taken
        }
    };
    const auto files = services->files;
    co_return co_await files->run(std::move(work), std::move(stop));
}

QCoro::Task<AttachmentIntake> intakeOfPdf(
    SharedServices services, QString name, QByteArray pdf, std::stop_token stop)
{
    PdfText read = co_await services->pdfTexts->read(pdf, stop);
    throwIfStopped(stop);

    AttachmentIntake intake;
    InputAttachment attachment = attachmentOf(*kindOf(u"pdf"_s), name, std::move(pdf));
    attachment.extractedText = std::move(read.text);
    intake.attachments.append(std::move(attachment));
    if (read.isCut) {
        intake.notices.append("Could not read all pages of PDF file: "_L1 + name);
    }
    co_return intake;
}

QCoro::Task<std::optional<QByteArray>> pictureOf(
    SharedServices services, QByteArray svg, std::stop_token stop)
{
    try {
        co_return co_await services->drawings->rasterize(std::move(svg), kDrawingSize, stop);
    } catch (const UserFacingError &) {
        co_return std::nullopt; // the notice names the file instead
    }
}

QCoro::Task<AttachmentIntake> intakeOfFile(SharedServices services, QUrl url, std::stop_token stop)
{
    const QString name = lastComponent(url);
    const QString extension = extensionOf(name);
    AttachmentIntake intake;
    const FileKind *kind = kindOf(extension);
    if (kind == nullptr) {
        intake.notices.append(unsupportedNotice(extension, name));
        co_return intake;
    }
    std::optional<QByteArray> bytes = co_await fileBytes(services, url, stop);
    if (bytes && kind->kind == InputAttachmentKind::Pdf) {
        co_return co_await intakeOfPdf(services, name, std::move(*bytes), stop);
    }
    if (bytes && kind->kind == InputAttachmentKind::Svg) {
        bytes = co_await pictureOf(services, std::move(*bytes), stop);
        throwIfStopped(stop);
    }
    if (bytes) {
        intake.attachments.append(attachmentOf(*kind, name, std::move(*bytes)));
    } else {
        intake.notices.append(kind->failure + name);
    }
    co_return intake;
}

void append(AttachmentIntake &intake, AttachmentIntake more)
{
    intake.attachments += std::move(more.attachments);
    intake.notices += std::move(more.notices);
}

QCoro::Task<AttachmentIntake> intakeOfFiles(
    SharedServices services, QList<QUrl> urls, std::stop_token stop)
{
    AttachmentIntake intake;
    for (const QUrl &url : std::as_const(urls)) {
        throwIfStopped(stop);
        AttachmentIntake ofFile = co_await intakeOfFile(services, url, stop);
        append(intake, std::move(ofFile));
    }
    co_return intake;
}

QCoro::Task<AttachmentIntake> intakeOfPayload(
    SharedServices services, ClipboardPayload payload, std::stop_token stop)
{
    AttachmentIntake intake;
    if (payload.imagePNGData) {
        intake.attachments.append(attachmentOf(
            *kindOf(u"png"_s), u"ClipboardImage.png"_s, std::move(*payload.imagePNGData)));
    }
    if (payload.pdfData) {
        QString name = u"ClipboardDocument.pdf"_s;
        AttachmentIntake ofPdf =
            co_await intakeOfPdf(services, std::move(name), std::move(*payload.pdfData), stop);
        append(intake, std::move(ofPdf));
    }
    AttachmentIntake ofFiles = co_await intakeOfFiles(services, payload.fileURLs, stop);
    append(intake, std::move(ofFiles));
    co_return intake;
}

} // namespace

AttachmentReader::AttachmentReader(
    std::shared_ptr<PdfTextReading> pdfTexts, std::shared_ptr<SvgRasterizing> drawings)
{
    auto services = std::make_shared<Services>();
    services->pdfTexts = std::move(pdfTexts);
    services->drawings = std::move(drawings);
    m_services = std::move(services);
}

QCoro::Task<AttachmentIntake> AttachmentReader::attachmentsFromPayload(
    ClipboardPayload payload, std::stop_token stop) const
{
    return intakeOfPayload(m_services, std::move(payload), std::move(stop));
}

QCoro::Task<AttachmentIntake> AttachmentReader::attachmentsFromFiles(
    QList<QUrl> urls, std::stop_token stop) const
{
    return intakeOfFiles(m_services, std::move(urls), std::move(stop));
}

} // namespace velarc
