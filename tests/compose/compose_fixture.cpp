#include "compose/compose_fixture.h"

#include "support/wait_until.h"

#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>

#include <stdexcept>

namespace velarc {

namespace {

QString folderOf(const char *variable)
{
    const QString folder = qEnvironmentVariable(variable);
    if (folder.isEmpty()) {
        throw std::runtime_error("this test runs in a session of its own");
    }
    return folder;
}

QString openedFile(const QString &scheme)
{
    return folderOf("VELARC_SESSION") + u'/' + scheme + u".opened"_s;
}

void write(const QString &path, const QString &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(text.toUtf8()) < 0) {
        throw std::runtime_error("a file of the test could not be written");
    }
}

// Writes its arguments down, a line each, in a file that is there at once as a whole.
QString recordingProgram(const QString &scheme)
{
    const QString path = folderOf("VELARC_SESSION") + u"/open-"_s + scheme;
    const QString opened = openedFile(scheme);
    write(path,
        u"#!/bin/sh\nprintf '%s\\n' \"$@\" >'"_s + opened + u".new'\nmv '"_s + opened + u".new' '"_s
            + opened + u"'\n"_s);
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

} // namespace

void registerBrokenProgram(const BrokenProgram &program)
{
    const QString name = u"recording-"_s + program.scheme + u".desktop"_s;
    QString entry = u"[Desktop Entry]\nType=Application\nName=Recorder\nExec="_s
        + (program.executable.isEmpty() ? recordingProgram(program.scheme) : program.executable)
        + u" %u\nMimeType=x-scheme-handler/"_s + program.scheme + u";\n"_s;
    if (!program.workingFolder.isEmpty()) {
        entry += u"Path="_s + program.workingFolder + u'\n';
    }
    write(folderOf("XDG_DATA_HOME") + u"/applications/"_s + name, entry);
    const QString defaults = folderOf("XDG_CONFIG_HOME") + u"/mimeapps.list"_s;
    if (!QFile::exists(defaults)) {
        write(defaults, u"[Default Applications]\n"_s);
    }
    write(defaults, u"x-scheme-handler/"_s + program.scheme + u'=' + name + u'\n');
}

void registerProgram(const QString &scheme)
{
    registerBrokenProgram({scheme, {}, {}});
}

ComposeTest::ComposeTest()
{
    for (const QString &scheme : {u"mailto"_s, u"sms"_s}) {
        QFile::remove(openedFile(scheme));
    }
}

bool ComposeTest::hasOpened(const QString &scheme)
{
    return QFile::exists(openedFile(scheme));
}

QByteArray ComposeTest::addressOpened(const QString &scheme)
{
    const QFileSystemWatcher watcher({folderOf("VELARC_SESSION")});
    if (!waitUntil([&] { return hasOpened(scheme); })) {
        ADD_FAILURE() << "no program was opened for " << scheme.toStdString();
        return {};
    }
    QFile file(openedFile(scheme));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray lines = file.readAll();
    EXPECT_EQ(lines.count('\n'), 1);
    return lines.chopped(1);
}

} // namespace velarc
