#include "run/action_files.h"

#include "actions/action_json.h"
#include "base/private_file.h"
#include "intake/file_reading.h"

#include <QFile>
#include <QFileInfo>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

ActionImportError refusal(const QString &what)
{
    return ActionImportError(what + u" Nothing was imported."_s);
}

void requireReadableKind(const QFileInfo &file)
{
    if (!file.exists()) {
        throw refusal(u"There is no file \u201c"_s + file.fileName() + u"\u201d."_s);
    }
    if (file.isDir()) {
        throw refusal(u"\u201c"_s + file.fileName() + u"\u201d is a folder."_s);
    }
    if (!file.isFile()) {
        throw refusal(u"\u201c"_s + file.fileName() + u"\u201d is no regular file."_s);
    }
    if (file.size() > kImportedBytesLimit) {
        throw tooLargeToImport();
    }
}

} // namespace

ActionFile loadActionFile(const QString &path, const std::stop_token &stop)
{
    const QFileInfo file(path);
    requireReadableKind(file);
    const std::optional<QByteArray> bytes = readRegularFile(QFile::encodeName(path), stop);
    if (!bytes) {
        throw refusal(u"\u201c"_s + file.fileName() + u"\u201d could not be read."_s);
    }
    return readActionFile(*bytes, stop);
}

bool saveActionFile(const QString &path, const QList<AIAction> &actions, IfPresent ifPresent)
{
    const QFileInfo file(path);
    if (ifPresent == IfPresent::Refuse && file.isFile()) {
        return false;
    }
    if (!replacePrivateFile(path, writeActions(actions))) {
        throw ActionExportError(u"The file \u201c"_s + file.fileName()
            + u"\u201d could not be written. Nothing was exported."_s);
    }
    return true;
}

} // namespace velarc
