#include "system_actions/calendar_store_choice.h"

#include "base/private_file.h"
#include "store/private_files.h"
#include "system_actions/eds_calendar_store.h"
#include "system_actions/vdir_calendar_store.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kServer("server\n");
constexpr QByteArrayView kFolder("folder\n");

// Qt 6.4 has no name for the folder for state.
QString stateFolder()
{
    const QString given = qEnvironmentVariable("XDG_STATE_HOME");
    const QString base = given.startsWith(u'/')
        ? given
        : QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + u"/.local/state"_s;
    return base + u"/velarc"_s;
}

std::unique_ptr<CalendarBackend> serverCalendars()
{
    if (!askSessionBus().hasCalendarServer) {
        return nullptr;
    }
    auto server = loadCalendarServer();
    return server ? std::make_unique<EdsCalendars>(std::move(server)) : nullptr;
}

} // namespace

std::shared_ptr<CalendarStore> makeCalendarStore()
{
    ChosenCalendars::Sources sources{
        stateFolder() + u"/calendars"_s,
        [] { return askSessionBus().isThere; },
        &serverCalendars,
        [] { return std::make_unique<VdirCalendars>(calendarsFolder()); },
    };
    return std::make_shared<BackgroundCalendarStore>(
        std::make_shared<ChosenCalendars>(std::move(sources)));
}

ChosenCalendars::ChosenCalendars(Sources sources) : m_sources(std::move(sources)) {}

bool ChosenCalendars::requestAccess(std::stop_token stop)
{
    return chosen(stop).requestAccess(stop);
}

QList<CalendarInfo> ChosenCalendars::calendars(std::stop_token stop)
{
    return chosen(stop).calendars(stop);
}

std::optional<CalendarInfo> ChosenCalendars::defaultCalendar(std::stop_token stop)
{
    return chosen(stop).defaultCalendar(stop);
}

QList<CalendarEvent> ChosenCalendars::events(CalendarWindow window, std::stop_token stop)
{
    return chosen(stop).events(window, stop);
}

std::optional<CalendarEvent> ChosenCalendars::event(const QString &identifier, std::stop_token stop)
{
    return chosen(stop).event(identifier, stop);
}

CalendarEvent ChosenCalendars::save(const CalendarEvent &event, std::stop_token stop)
{
    CalendarEvent saved = chosen(stop).save(event, stop);
    if (event.identifier.isEmpty() && !remembered() && m_sources.isOnSessionBus()) {
        remember();
    }
    return saved;
}

void ChosenCalendars::remove(const CalendarEvent &event, std::stop_token stop)
{
    chosen(stop).remove(event, stop);
}

// A server that denies access is there, and the one to ask.
CalendarBackend &ChosenCalendars::chosen(const std::stop_token &stop)
{
    if (m_chosen) {
        return *m_chosen;
    }
    const auto kind = remembered();
    auto server = kind == Kind::Folder ? nullptr : m_sources.server();
    if (kind == Kind::Server && !server) {
        throw CalendarStoreError(
            u"The calendar server that holds your events cannot be reached."_s);
    }
    if (!kind && server && server->requestAccess(stop) && !server->defaultCalendar(stop)) {
        server = nullptr;
    }
    m_kind = server ? Kind::Server : Kind::Folder;
    m_chosen = server ? std::move(server) : m_sources.folder();
    return *m_chosen;
}

std::optional<ChosenCalendars::Kind> ChosenCalendars::remembered() const
{
    QFile file(m_sources.choiceFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray kind = file.read(kServer.size() + 1);
    if (kind == kServer) {
        return Kind::Server;
    }
    return kind == kFolder ? std::optional(Kind::Folder) : std::nullopt;
}

// Should that fail, the next event brings another chance.
void ChosenCalendars::remember() const
{
    if (makePrivateFolder(QFileInfo(m_sources.choiceFile).path())) {
        static_cast<void>(
            writeNewPrivateFile(m_sources.choiceFile, m_kind == Kind::Server ? kServer : kFolder));
    }
}

} // namespace velarc
