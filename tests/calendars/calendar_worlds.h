#pragma once

// The calendars that tests are done with, and the files in them.

#include "calendar_world.h"

#include <QTemporaryDir>

namespace velarc {

// A calendar file of these events: what stands between the lines that begin and end each of them.
[[nodiscard]] QByteArray calendarWith(const QList<QByteArray> &events);

void writeFile(const QString &path, const QByteArray &bytes); // and the folders above it
[[nodiscard]] QByteArray readFile(const QString &path);

// While it lives, the process may do no more than an ordinary user may, to whom the folder is
// given.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const QString &folder);
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    static constexpr unsigned kNobody = 65534;
    bool m_wasRoot;
};

class FolderWorld final : public CalendarWorld
{
public:
    FolderWorld();
    ~FolderWorld() override;

    [[nodiscard]] QString root() const { return m_folder.path() + u"/calendars"_s; }
    [[nodiscard]] QString personal() const { return root() + u"/Personal"_s; }

    [[nodiscard]] std::shared_ptr<CalendarStore> open() override;
    void put(const QList<QByteArray> &events) override;
    [[nodiscard]] QByteArray written() override;
    [[nodiscard]] QString readOnlyCalendar() override;

private:
    QTemporaryDir m_folder;
    OrdinaryUser m_user;
    int m_written = 0;
};

} // namespace velarc
