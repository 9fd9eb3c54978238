#include "store/sqlite_defaults_domain.h"

#include "store/private_files.h"

#include <QDir>
#include <QFileInfo>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

QString folderOf(const QString &path)
{
    return QFileInfo(path).path();
}

// The folder that the variable names, else its usual place in the home folder. A name that is not
// absolute counts as unset.
QString baseFolder(const char *variable, const QString &usualPlace)
{
    const QString named = qEnvironmentVariable(variable);
    if (QDir::isAbsolutePath(named)) {
        return named;
    }
    const QString home = qEnvironmentVariable("HOME");
    const bool isUsable = QDir::isAbsolutePath(home) && QFileInfo(home).isDir();
    return isUsable ? home + u'/' + usualPlace : QString();
}

} // namespace

SqliteDefaultsDomain::SqliteDefaultsDomain(
    QStringList files, const Clock &clock, std::chrono::milliseconds patience)
    : m_files(std::move(files)), m_clock(clock), m_patience(patience)
{
    openFirstUsable();
}

void SqliteDefaultsDomain::openFirstUsable()
{
    m_file.reset();
    for (const QString &path : std::as_const(m_files)) {
        m_file = openOrReplace(path);
        if (m_file) {
            return;
        }
    }
}

// Under the lock, so that of two processes which find a damaged file the later one finds the
// earlier one's fresh file.
std::unique_ptr<DefaultsFile> SqliteDefaultsDomain::openOrReplace(const QString &path)
{
    if (!makePrivateFolder(folderOf(path))) {
        return nullptr;
    }
    const FolderLock lock(folderOf(path), m_patience);
    DefaultsFile::Opened opened = DefaultsFile::open(path, m_patience);
    if (opened.outcome == Outcome::Damaged && lock.isHeld() && setAside(path, m_clock.now())) {
        opened = DefaultsFile::open(path, m_patience);
    }
    return std::move(opened.file);
}

void SqliteDefaultsDomain::replaceDamaged()
{
    const QString path = m_file->path();
    {
        const FolderLock lock(folderOf(path), m_patience);
        const bool isReplaced = m_file->hasMoved();
        m_file.reset();
        if (!isReplaced && !(lock.isHeld() && setAside(path, m_clock.now()))) {
            m_files.removeAll(path);
        }
    }
    openFirstUsable();
}

template <typename Operation>
SqliteDefaultsDomain::Outcome SqliteDefaultsDomain::onFile(Operation operation)
{
    if (m_file && m_file->hasMoved()) {
        openFirstUsable();
    }
    if (!m_file) {
        return Outcome::Refused;
    }
    const Outcome outcome = operation(*m_file);
    if (outcome != Outcome::Damaged) {
        return outcome;
    }
    replaceDamaged();
    return m_file ? operation(*m_file) : Outcome::Refused;
}

template <typename Operation>
SqliteDefaultsDomain::Outcome SqliteDefaultsDomain::onWritableFile(Operation operation)
{
    return onFile([&operation](DefaultsFile &file) {
        return file.isWritable() ? operation(file) : Outcome::Refused;
    });
}

void SqliteDefaultsDomain::keepUnlessWritten(
    Outcome outcome, QByteArrayView key, const std::optional<DefaultsValue> &value)
{
    if (outcome == Outcome::Refused) {
        m_unwritten.insert(key.toByteArray(), value);
    } else if (outcome == Outcome::Done) {
        m_unwritten.remove(key.toByteArray());
    }
}

std::optional<DefaultsValue> SqliteDefaultsDomain::read(QByteArrayView key)
{
    const auto unwritten = m_unwritten.constFind(key.toByteArray());
    if (unwritten != m_unwritten.constEnd()) {
        return *unwritten;
    }
    std::optional<DefaultsValue> value;
    const Outcome outcome = onFile([&](DefaultsFile &file) { return file.read(key, value); });
    return outcome == Outcome::Done ? value : std::nullopt;
}

void SqliteDefaultsDomain::write(QByteArrayView key, const DefaultsValue &value)
{
    const Outcome outcome =
        onWritableFile([&](DefaultsFile &file) { return file.write(key, value); });
    keepUnlessWritten(outcome, key, value);
}

void SqliteDefaultsDomain::erase(QByteArrayView key)
{
    const Outcome outcome = onWritableFile([&](DefaultsFile &file) { return file.erase(key); });
    keepUnlessWritten(outcome, key, std::nullopt);
}

void SqliteDefaultsDomain::writeUnlessChanged(
    QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal)
{
    const Outcome outcome = onWritableFile(
        [&](DefaultsFile &file) { return file.writeUnlessChanged(key, seen, proposal); });
    if (outcome == Outcome::Done) {
        m_unwritten.remove(key.toByteArray());
    } else if (outcome == Outcome::Refused && !hasChanged(read(key), seen)) {
        m_unwritten.insert(key.toByteArray(), proposal);
    }
}

QStringList defaultsFiles()
{
    QStringList files;
    const QString data = baseFolder("XDG_DATA_HOME", u".local/share"_s);
    if (!data.isEmpty()) {
        files.append(data + u"/velarc/group.com.tolmar.velarc.sqlite"_s);
    }
    const QString config = baseFolder("XDG_CONFIG_HOME", u".config"_s);
    if (!config.isEmpty()) {
        files.append(config + u"/velarc/standard.sqlite"_s);
    }
    return files;
}

} // namespace velarc
