#include "intake/pdf_export.h"

#include "base/private_file.h"
#include "base/text.h"
#include "base/uuid.h"
#include "records/run_errors.h"

#include <QUuid>

namespace velarc {

using namespace Qt::StringLiterals;

struct PdfExport::Members
{
    explicit Members(QString helper, std::chrono::milliseconds time)
        : process(std::move(helper)), bound(time)
    {
    }

    DocumentProcess process;
    std::chrono::milliseconds bound;
    SerialWorker files; // and long texts
};

namespace {

// What most file systems take for one name, in bytes.
constexpr qsizetype kLongestName = 255;
constexpr qsizetype kShortUuidLength = 8;

// What the helper is told of a title. It runs off the page long before, and the system takes no
// argument of 128 KiB.
constexpr qsizetype kLongestTitle = 30'000;

// The longest beginning of `text` of whole characters that takes no more than `limit` bytes.
QString cutToBytes(const QString &text, qsizetype limit)
{
    // A unit takes a byte at least. One unit more than fits: the character that is cut here goes.
    QStringView kept = QStringView(text).left(limit + 1);
    while (kept.toUtf8().size() > limit) {
        kept = characterPrefix(kept, characterCount(kept) - 1);
    }
    return kept.toString();
}

QCoro::Task<QByteArray> renderPDF(
    std::shared_ptr<PdfExport::Members> members, QString text, QString title, std::stop_token stop)
{
    auto encode = [text = std::move(text)](const std::stop_token &) {
        return isBlank(text) ? QByteArrayLiteral("No content.") : text.toUtf8();
    };
    QByteArray body = co_await members->files.run(std::move(encode), stop);
    DocumentJob job{{u"text-pdf"_s, u"--title"_s, title.left(kLongestTitle)}, std::move(body),
        {members->bound}};
    const DocumentOutcome outcome = co_await members->process.run(std::move(job), stop);
    if (outcome.end != DocumentEnd::Done || outcome.output.isEmpty()) {
        throw PDFExportServiceError::contextUnavailable();
    }
    co_return QByteArray(outcome.output);
}

QCoro::Task<QUrl> writePDF(
    std::shared_ptr<PdfExport::Members> members, QString text, QString title, std::stop_token stop)
{
    const QString shown = isBlank(title) ? u"Velarc Result"_s : trimmed(title).toString();
    QByteArray bytes = co_await renderPDF(members, std::move(text), shown, stop);
    const QString path = temporaryFilePath(pdfFileName(shown, newUuid()));
    auto write = [path, bytes = std::move(bytes)](
                     const std::stop_token &) { return writeNewPrivateFile(path, bytes); };
    const bool isWritten = co_await members->files.run(std::move(write), stop);
    if (!isWritten) {
        throw PDFExportServiceError::writeFailed();
    }
    co_return QUrl::fromLocalFile(path);
}

} // namespace

QString pdfFileName(const QString &title, const QUuid &uuid)
{
    const QString ending = u'-' + uuidText(uuid).left(kShortUuidLength) + u".pdf"_s;
    QString stem = title;
    stem.replace(u'/', u'-').replace(u':', u'-').remove(QChar(u'\0'));
    return cutToBytes(stem, kLongestName - ending.size()) + ending;
}

PdfExport::PdfExport(QString helper, std::chrono::milliseconds bound)
    : m_members(std::make_shared<Members>(std::move(helper), bound))
{
}

QCoro::Task<QUrl> PdfExport::exportPDF(QString text, QString title, std::stop_token stop)
{
    return writePDF(m_members, std::move(text), std::move(title), std::move(stop));
}

} // namespace velarc
