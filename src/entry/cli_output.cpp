#include "entry/cli_output.h"

#include "base/json.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <unistd.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

OutputError notWritten(const QString &path, const QString &reason)
{
    return OutputError(u"\""_s + path + u"\" could not be written: "_s + reason + u'.');
}

// A device or a pipe: its name must not be given to a new file. Below /dev a name may also lead to
// whatever file a shell has redirected a stream to.
bool isSpecial(const QFileInfo &file)
{
    return file.exists() && (!file.isFile() || file.absoluteFilePath().startsWith(u"/dev/"));
}

bool isWritable(const QFileInfo &file)
{
    return ::access(QFile::encodeName(file.filePath()).constData(), W_OK) == 0;
}

template <typename File>
void writeThrough(File &file, QIODevice::OpenMode mode, const QByteArray &bytes)
{
    if (!file.open(mode) || file.write(bytes) != bytes.size() || !file.flush()) {
        throw notWritten(file.fileName(), file.errorString());
    }
}

Json payloadJson(const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        return {{"type", "text"}, {"text", jsonFromText(text->text)}};
    }
    if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        return {{"type", "image"}, {"png", image->png.toBase64().toStdString()}};
    }
    const auto &pdf = std::get<PdfPayload>(payload);
    return {{"type", "pdf"}, {"file", jsonFromText(pdf.url.toLocalFile())},
        {"text", jsonFromText(pdf.previewText)}};
}

} // namespace

QByteArray payloadBytes(const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        return text->text.toUtf8();
    }
    if (const auto *image = std::get_if<ImagePayload>(&payload)) {
        return image->png;
    }
    QFile file(std::get<PdfPayload>(payload).url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        throw OutputError(
            u"\""_s + file.fileName() + u"\" could not be read: "_s + file.errorString() + u'.');
    }
    return file.readAll();
}

std::optional<QString> obstacleToWriting(const QString &path)
{
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    if (file.isDir()) {
        return u"\""_s + path + u"\" is a folder."_s;
    }
    if (!folder.isDir()) {
        return u"There is no folder \""_s + folder.filePath() + u"\"."_s;
    }
    // A regular file is replaced by a new one, which is made beside it first.
    if (file.exists() && !isWritable(file)) {
        return u"\""_s + path + u"\" cannot be written."_s;
    }
    if (!isSpecial(file) && !isWritable(folder)) {
        return u"The folder \""_s + folder.filePath() + u"\" cannot be written."_s;
    }
    return std::nullopt;
}

void writeOutputFile(const QString &path, const QByteArray &bytes)
{
    if (isSpecial(QFileInfo(path))) {
        QFile file(path);
        writeThrough(file, QIODevice::WriteOnly | QIODevice::Unbuffered, bytes);
        return;
    }
    QSaveFile file(path);
    writeThrough(file, QIODevice::WriteOnly, bytes);
    if (!file.commit()) {
        throw notWritten(path, file.errorString());
    }
}

QString outcomeJson(const IntentOutcome &outcome)
{
    Json object{{"dialog", jsonFromText(outcome.dialog)}, {"provider", nullptr}, {"model", nullptr},
        {"payload", nullptr}};
    if (outcome.run) {
        if (outcome.run->provider) {
            object["provider"] = jsonFromText(storedSpelling(*outcome.run->provider));
        }
        if (outcome.run->modelID) {
            object["model"] = jsonFromText(*outcome.run->modelID);
        }
        object["payload"] = payloadJson(outcome.run->payload);
    }
    return QString::fromUtf8(writeJson(object));
}

} // namespace velarc
