// What other programs of the session get when a result is shared.

#include "base/errors.h"
#include "support/outcome.h"
#include "support/wait_until.h"
#include "ui/desktop_sharing.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <stdexcept>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr uint kGranted = 0;
constexpr uint kRefused = 1;
constexpr uint kOther = 2;

QByteArray contentOf(const QDBusUnixFileDescriptor &descriptor)
{
    QFile file;
    return file.open(descriptor.fileDescriptor(), QIODevice::ReadOnly) ? file.readAll()
                                                                       : QByteArray("no file");
}

// A portal and a file manager in one.
class Desktop final : public QDBusVirtualObject
{
public:
    std::map<QString, uint> versions{
        {u"org.freedesktop.portal.OpenURI"_s, 3}, {u"org.freedesktop.portal.Email"_s, 4}};
    std::optional<uint> response = kGranted; // none: the user takes their time
    QStringList calls; // METHOD CONTENT-OF-THE-FILE ask
    QVariantMap options; // of the last call
    int withdrawn = 0;

    explicit Desktop(const QStringList &names)
        : m_names(names)
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"desktop"_s))
    {
        bool isThere = m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        for (const QString &name : m_names) {
            isThere = isThere && m_bus.registerService(name);
        }
        if (!isThere) {
            throw std::runtime_error("somebody else has the name");
        }
    }

    ~Desktop() override
    {
        for (const QString &name : m_names) {
            m_bus.unregisterService(name);
        }
        QDBusConnection::disconnectFromBus(u"desktop"_s);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        const QVariantList arguments = message.arguments();
        if (message.member() == u"Get"_s) {
            const auto found = versions.find(arguments.value(0).toString());
            m_bus.send(found == versions.end()
                    ? message.createErrorReply(QDBusError::InvalidArgs, u"none"_s)
                    : message.createReply(
                        QVariant::fromValue(QDBusVariant(QVariant(found->second)))));
        } else if (message.member() == u"ShowItems"_s) {
            calls.append(u"ShowItems "_s + arguments.value(0).toStringList().join(u' '));
            m_bus.send(message.createReply());
        } else if (message.member() == u"Close"_s) {
            ++withdrawn;
        } else {
            take(message);
        }
        return true;
    }

private:
    QStringList m_names;
    QDBusConnection m_bus;

    void take(const QDBusMessage &message)
    {
        const QVariantList arguments = message.arguments();
        options = qdbus_cast<QVariantMap>(arguments.last());
        QString call = message.member();
        if (arguments.size() == 3) {
            call += u' '
                + QString::fromUtf8(contentOf(arguments.at(1).value<QDBusUnixFileDescriptor>()));
        }
        calls.append(call);
        const QString path = u"/org/freedesktop/portal/desktop/request/"_s
            + message.service().mid(1).replace(u'.', u'_') + u'/'
            + options.value(u"handle_token"_s).toString();
        m_bus.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        if (response) {
            QDBusMessage signal = QDBusMessage::createTargetedSignal(
                message.service(), path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
            signal.setArguments({*response, QVariantMap()});
            m_bus.send(signal);
        }
    }
};

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kFileManager = u"org.freedesktop.FileManager1"_s;

class DesktopSharingTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    DesktopSharing sharing;
    std::stop_source stop;
    QUrl file;

    DesktopSharingTest()
    {
        const QString path = folder.filePath(u"a result.txt"_s);
        QFile made(path);
        if (made.open(QIODevice::WriteOnly)) {
            made.write("hello");
        }
        file = QUrl::fromLocalFile(path);
        // Nothing of this machine: only what a test puts there.
        qputenv("PATH", folder.path().toUtf8() + ":/usr/bin:/bin");
        qputenv("VELARC_SEEN", seenPath().toUtf8());
    }

    [[nodiscard]] QString seenPath() const { return folder.filePath(u"seen"_s); }

    // Stands before the one of this machine, and notes what it is called with.
    void installOpener() const
    {
        QFile script(folder.filePath(u"xdg-open"_s));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf %s \"$1\" >\"$VELARC_SEEN.part\"\n"
                     "mv \"$VELARC_SEEN.part\" \"$VELARC_SEEN\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] QString seenByOpener() const
    {
        EXPECT_TRUE(waitUntil([this] { return QFile::exists(seenPath()); }));
        QFile seen(seenPath());
        return seen.open(QIODevice::ReadOnly) ? QString::fromUtf8(seen.readAll()) : QString();
    }
};

TEST_F(DesktopSharingTest, aBareSessionWithoutProgramsHasNoMeans)
{
    qputenv("PATH", "/nowhere");
    EXPECT_EQ(outcomeOf(sharing.means(stop.get_token())), SharingMeans());
}

TEST_F(DesktopSharingTest, thePortalGivesAllMeans)
{
    qputenv("PATH", "/nowhere");
    Desktop desktop({kPortal});
    EXPECT_EQ(outcomeOf(sharing.means(stop.get_token())), (SharingMeans{true, true, true, true}));
}

TEST_F(DesktopSharingTest, aFileManagerAloneShowsFilesAndNoMore)
{
    qputenv("PATH", "/nowhere");
    Desktop desktop({kFileManager});
    EXPECT_EQ(
        outcomeOf(sharing.means(stop.get_token())), (SharingMeans{false, true, false, false}));
}

TEST_F(DesktopSharingTest, thePortalGetsTheFileItselfAndAsksWhereItIsTold)
{
    Desktop desktop({kPortal});
    EXPECT_EQ(
        outcomeOf(sharing.open(file, OpenChoice::Asked, stop.get_token())), ShareOutcome::Done);
    EXPECT_TRUE(desktop.options.value(u"ask"_s).toBool());
    EXPECT_EQ(
        outcomeOf(sharing.open(file, OpenChoice::Usual, stop.get_token())), ShareOutcome::Done);
    EXPECT_FALSE(desktop.options.value(u"ask"_s).toBool());
    EXPECT_EQ(desktop.calls, (QStringList{u"OpenFile hello"_s, u"OpenFile hello"_s}));
}

TEST_F(DesktopSharingTest, theUsersNoIsNoFailure)
{
    Desktop desktop({kPortal});
    desktop.response = kRefused;
    EXPECT_EQ(outcomeOf(sharing.open(file, OpenChoice::Asked, stop.get_token())),
        ShareOutcome::Cancelled);
    desktop.response = kOther;
    EXPECT_EQ(
        outcomeOf(sharing.open(file, OpenChoice::Asked, stop.get_token())), ShareOutcome::Failed);
}

TEST_F(DesktopSharingTest, aFileThatHasGoneIsAFailure)
{
    Desktop desktop({kPortal});
    QFile::remove(file.toLocalFile());
    EXPECT_EQ(
        outcomeOf(sharing.open(file, OpenChoice::Asked, stop.get_token())), ShareOutcome::Failed);
    EXPECT_EQ(outcomeOf(sharing.mail({QString(), file}, stop.get_token())), ShareOutcome::Failed);
    EXPECT_EQ(desktop.calls, QStringList());
}

TEST_F(DesktopSharingTest, withoutAPortalTheFileIsOpenedByItsKind)
{
    installOpener();
    EXPECT_TRUE(outcomeOf(sharing.means(stop.get_token())).opens);
    EXPECT_EQ(
        outcomeOf(sharing.open(file, OpenChoice::Asked, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(seenByOpener(), file.toLocalFile());
}

TEST_F(DesktopSharingTest, theFileManagerIsToldWhichFileToMark)
{
    Desktop desktop({kPortal, kFileManager});
    EXPECT_EQ(outcomeOf(sharing.showInFolder(file, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(desktop.calls, QStringList(u"ShowItems "_s + QString::fromUtf8(file.toEncoded())));
}

TEST_F(DesktopSharingTest, withoutAFileManagerThePortalShowsTheFolder)
{
    Desktop desktop({kPortal});
    EXPECT_EQ(outcomeOf(sharing.showInFolder(file, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(desktop.calls, QStringList(u"OpenDirectory hello"_s));
}

TEST_F(DesktopSharingTest, withoutEitherTheFolderIsOpened)
{
    installOpener();
    EXPECT_EQ(outcomeOf(sharing.showInFolder(file, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(seenByOpener(), folder.path());
}

TEST_F(DesktopSharingTest, aFileIsMailedAsAnAttachment)
{
    Desktop desktop({kPortal});
    EXPECT_EQ(outcomeOf(sharing.mail({QString(), file}, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(desktop.calls, QStringList(u"ComposeEmail"_s));
    EXPECT_EQ(desktop.options.value(u"subject"_s).toString(), u"a result.txt"_s);
    const auto attachments =
        qdbus_cast<QList<QDBusUnixFileDescriptor>>(desktop.options.value(u"attachment_fds"_s));
    ASSERT_EQ(attachments.size(), 1);
    EXPECT_EQ(contentOf(attachments.first()), "hello");
}

TEST_F(DesktopSharingTest, aTextIsMailedAsTheBody)
{
    Desktop desktop({kPortal});
    EXPECT_EQ(
        outcomeOf(sharing.mail({u"h\u00e9llo\n"_s, {}}, stop.get_token())), ShareOutcome::Done);
    EXPECT_EQ(desktop.options.value(u"body"_s).toString(), u"h\u00e9llo\n"_s);
}

TEST_F(DesktopSharingTest, aStopWithdrawsTheQuestion)
{
    Desktop desktop({kPortal});
    desktop.response.reset();
    QCoro::Task<ShareOutcome> opening = sharing.open(file, OpenChoice::Asked, stop.get_token());
    EXPECT_TRUE(waitUntil([&] { return !desktop.calls.isEmpty(); }));
    stop.request_stop();
    EXPECT_THROW(outcomeOf(std::move(opening)), CancellationError);
    EXPECT_TRUE(waitUntil([&] { return desktop.withdrawn == 1; }));
}

} // namespace

} // namespace velarc
