#include "run/named_files.h"

#include "base/text.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// A text that grows by less is typed.
constexpr qsizetype kPastedLength = 9;

// The longest path that the kernel takes, in bytes, and so in characters.
constexpr qsizetype kLongestPath = 4096;

QStringView withoutQuotes(QStringView line)
{
    const bool isQuoted = line.size() >= 2 && line.front() == u'"' && line.back() == u'"';
    return isQuoted ? line.sliced(1, line.size() - 2) : line;
}

QUrl standardised(const QString &path)
{
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

QUrl fileOfAddress(QStringView address)
{
    const QUrl url(address.toString(), QUrl::StrictMode);
    const bool isHere = url.host().isEmpty() || url.host() == u"localhost";
    if (!url.isValid() || !url.isLocalFile() || !isHere || !url.path().startsWith(u'/')) {
        return {};
    }
    return standardised(url.path(QUrl::FullyDecoded));
}

bool cameAtOnce(const QString &oldText, const QString &newText)
{
    return isBlank(oldText) || characterCount(newText) - characterCount(oldText) >= kPastedLength;
}

} // namespace

QUrl fileNamedBy(QStringView line)
{
    const QStringView named = withoutQuotes(line);
    if (named.isEmpty() || named.size() > kLongestPath || named.contains(QChar(u'\0'))) {
        return {};
    }
    if (named.startsWith(u"file://")) {
        return fileOfAddress(named);
    }
    if (named == u"~" || named.startsWith(u"~/")) {
        return standardised(QDir::homePath() + named.sliced(1).toString());
    }
    return named.startsWith(u'/') ? standardised(named.toString()) : QUrl();
}

QList<QUrl> filesNamedBy(const QString &oldText, const QString &newText)
{
    const QStringView text = trimmed(newText);
    constexpr QStringView kBeginnings = u"/~\"f";
    if (text.isEmpty() || !kBeginnings.contains(text.front()) || text == trimmed(oldText)
        || !cameAtOnce(oldText, newText)) {
        return {};
    }
    QList<QUrl> files;
    for (const QStringView line : splitLines(text)) {
        const QStringView words = trimmed(line);
        if (words.isEmpty()) {
            continue;
        }
        const QUrl file = fileNamedBy(words);
        if (file.isEmpty()) {
            return {};
        }
        files.append(file);
    }
    return withoutRepeatedFiles(files);
}

bool areFiles(const QList<QUrl> &places)
{
    return std::all_of(places.begin(), places.end(), [](const QUrl &place) {
        const QFileInfo file(place.toLocalFile());
        return file.exists() && !file.isDir();
    });
}

QList<QUrl> withoutRepeatedFiles(const QList<QUrl> &urls)
{
    QList<QUrl> files;
    QSet<QString> paths;
    for (const QUrl &url : urls) {
        const QString path = QDir::cleanPath(url.toLocalFile());
        if (!path.isEmpty() && !paths.contains(path)) {
            paths.insert(path);
            files.append(url);
        }
    }
    return files;
}

} // namespace velarc
