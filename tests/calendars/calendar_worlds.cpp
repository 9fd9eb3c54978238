#include "calendar_worlds.h"

#include "system_actions/calendar_backend.h"
#include "system_actions/eds_calendar_store.h"
#include "system_actions/vdir_calendar_store.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

namespace velarc {

QByteArray calendarWith(const QList<QByteArray> &events)
{
    QByteArray text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Other//EN\r\n";
    for (const QByteArray &event : events) {
        text += "BEGIN:VEVENT\r\n" + event + "END:VEVENT\r\n";
    }
    return text + "END:VCALENDAR\r\n";
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

OrdinaryUser::OrdinaryUser(const QString &folder) : m_wasRoot(geteuid() == 0)
{
    if (m_wasRoot) {
        EXPECT_EQ(chown(QFile::encodeName(folder).constData(), kNobody, kNobody), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
}

OrdinaryUser::~OrdinaryUser()
{
    if (m_wasRoot) {
        EXPECT_EQ(seteuid(0), 0);
    }
}

FolderWorld::FolderWorld() : m_user(m_folder.path()) {}

FolderWorld::~FolderWorld()
{
    for (const QString &name : QDir(root()).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile::setPermissions(root() + u'/' + name,
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner); // so that it can be removed
    }
}

std::shared_ptr<CalendarStore> FolderWorld::open()
{
    return std::make_shared<BackgroundCalendarStore>(std::make_shared<VdirCalendars>(root()));
}

void FolderWorld::put(const QList<QByteArray> &events)
{
    for (const QByteArray &event : events) {
        writeFile(personal() + u"/other-"_s + QString::number(m_written++) + u".ics"_s,
            calendarWith({event}));
    }
}

QByteArray FolderWorld::written()
{
    QByteArray all;
    for (const QString &name : QDir(personal()).entryList({u"*.ics"_s}, QDir::Files)) {
        all += readFile(personal() + u'/' + name);
    }
    return all;
}

QString FolderWorld::readOnlyCalendar()
{
    const QString title = u"Closed"_s;
    QDir().mkpath(root() + u'/' + title);
    QFile::setPermissions(root() + u'/' + title, QFile::ReadOwner | QFile::ExeOwner);
    return title;
}

namespace {

class ServerWorld final : public CalendarWorld
{
public:
    ServerWorld()
    {
        const auto server = loadCalendarServer();
        ServerCalendars found;
        EXPECT_FALSE(server->calendars(found, {}).hasFailed);
        m_default = found.defaultIdentifier;
        for (const ServerCalendar &calendar : found.all) {
            clear(*server, calendar);
        }
    }

    [[nodiscard]] std::shared_ptr<CalendarStore> open() override
    {
        return std::make_shared<BackgroundCalendarStore>(
            std::make_shared<EdsCalendars>(loadCalendarServer()));
    }

    void put(const QList<QByteArray> &events) override
    {
        const auto server = loadCalendarServer();
        for (const QByteArray &event : events) {
            const ServerOutcome outcome = server->create(m_default, calendarWith({event}), {});
            ASSERT_FALSE(outcome.hasFailed) << outcome.message.toStdString();
        }
    }

    [[nodiscard]] QByteArray written() override
    {
        QList<QByteArray> components;
        EXPECT_FALSE(loadCalendarServer()->select(m_default, "#t", components, {}).hasFailed);
        return components.join();
    }

    [[nodiscard]] QString readOnlyCalendar() override { return u"Birthdays & Anniversaries"_s; }

private:
    QString m_default;

    static void clear(CalendarServer &server, const ServerCalendar &calendar)
    {
        QList<QByteArray> components;
        EXPECT_FALSE(server.select(calendar.identifier, "#t", components, {}).hasFailed);
        for (const QByteArray &text : components) {
            const qsizetype from = text.indexOf("\nUID:") + 5;
            const QByteArray uid = text.sliced(from, text.indexOf('\r', from) - from);
            static_cast<void>(server.remove(calendar.identifier, uid, {}, {}));
        }
    }
};

} // namespace

std::unique_ptr<CalendarWorld> makeFolderWorld()
{
    return std::make_unique<FolderWorld>();
}

std::unique_ptr<CalendarWorld> makeServerWorld()
{
    return std::make_unique<ServerWorld>();
}

} // namespace velarc
