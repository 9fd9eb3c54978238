#include "ui/saved_file.h"

#include "base/text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

bool copyFile(const QString &from, QIODevice &to, QString *reason)
{
    QFile file(from);
    if (!file.open(QIODevice::ReadOnly)) {
        *reason = file.errorString();
        return false;
    }
    constexpr qint64 kPiece = 1 << 20;
    while (!file.atEnd()) {
        const QByteArray piece = file.read(kPiece);
        if (piece.isEmpty() || to.write(piece) != piece.size()) {
            *reason = file.error() == QFile::NoError ? to.errorString() : file.errorString();
            return false;
        }
    }
    return true;
}

bool writePayload(const ResultPayload &payload, QIODevice &to, QString *reason)
{
    if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        return copyFile(pdf->url.toLocalFile(), to, reason);
    }
    const auto *text = std::get_if<TextPayload>(&payload);
    const QByteArray bytes =
        text != nullptr ? text->text.toUtf8() : std::get<ImagePayload>(payload).png;
    if (to.write(bytes) == bytes.size()) {
        return true;
    }
    *reason = to.errorString();
    return false;
}

} // namespace

SaveReport saveResult(const ResultPayload &payload, const QString &path, Existing existing)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        return {SaveEnding::IsFolder, {}};
    }
    if (info.exists() && existing == Existing::Kept) {
        return {SaveEnding::Exists, {}};
    }
    QSaveFile file(path);
    // Where only the file itself may be written, as one that a sandbox lets through.
    file.setDirectWriteFallback(true);
    QString reason;
    if (!file.open(QIODevice::WriteOnly)) {
        return {SaveEnding::Failed, file.errorString()};
    }
    if (!writePayload(payload, file, &reason)) {
        file.cancelWriting();
        return {SaveEnding::Failed, reason};
    }
    return file.commit() ? SaveReport{SaveEnding::Saved, {}}
                         : SaveReport{SaveEnding::Failed, file.errorString()};
}

QString absolutePath(const QString &typed)
{
    const QString path = trimmed(typed).toString();
    if (path == u"~"_s || path.startsWith(u"~/"_s)) {
        return QDir::cleanPath(QDir::homePath() + path.mid(1));
    }
    return QDir::cleanPath(QDir::home().absoluteFilePath(path));
}

QString suggestedFileName(const ResultPayload &payload)
{
    if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        return pdf->url.fileName();
    }
    return std::holds_alternative<TextPayload>(payload) ? u"Velarc Result.txt"_s
                                                        : u"Velarc Image.png"_s;
}

} // namespace velarc
