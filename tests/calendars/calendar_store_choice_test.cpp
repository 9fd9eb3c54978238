#include "calendar_worlds.h"

#include "system_actions/calendar_store_choice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace velarc {

namespace {

// Says who it is by the title of its calendar.
class NamedCalendars final : public CalendarBackend
{
public:
    explicit NamedCalendars(QString name) : m_name(std::move(name)) {}

    bool hasDefault = true;
    bool grantsAccess = true;

    [[nodiscard]] bool requestAccess(std::stop_token) override { return grantsAccess; }
    [[nodiscard]] QList<CalendarInfo> calendars(std::stop_token) override
    {
        return {{m_name, m_name, true}};
    }
    [[nodiscard]] std::optional<CalendarInfo> defaultCalendar(std::stop_token) override
    {
        return hasDefault ? std::optional(CalendarInfo{m_name, m_name, true}) : std::nullopt;
    }
    [[nodiscard]] QList<CalendarEvent> events(CalendarWindow, std::stop_token) override
    {
        return {};
    }
    [[nodiscard]] std::optional<CalendarEvent> event(const QString &, std::stop_token) override
    {
        return std::nullopt;
    }
    [[nodiscard]] CalendarEvent save(const CalendarEvent &event, std::stop_token) override
    {
        return event;
    }
    void remove(const CalendarEvent &, std::stop_token) override {}

private:
    QString m_name;
};

class CalendarStoreChoice : public testing::Test
{
protected:
    QTemporaryDir folder;
    bool isOnBus = true;
    bool hasServer = true;
    bool hasDefault = true;
    bool grantsAccess = true;

    // As the program has it after a start.
    [[nodiscard]] ChosenCalendars start()
    {
        return ChosenCalendars({file(), [this] { return isOnBus; },
            [this]() -> std::unique_ptr<CalendarBackend> {
                auto server = std::make_unique<NamedCalendars>(u"server"_s);
                server->hasDefault = hasDefault;
                server->grantsAccess = grantsAccess;
                return hasServer ? std::move(server) : nullptr;
            },
            [] { return std::make_unique<NamedCalendars>(u"folder"_s); }});
    }

    [[nodiscard]] QString file() const { return folder.filePath(u"state/velarc/calendars"_s); }
    [[nodiscard]] QString choice() { return start().calendars({}).value(0).title; }

    void makeEvent() { static_cast<void>(start().save({}, {})); }
};

TEST_F(CalendarStoreChoice, serverIsChosenWhereItIsAndHasADefaultCalendar)
{
    EXPECT_EQ(choice(), u"server"_s);
    hasDefault = false;
    EXPECT_EQ(choice(), u"folder"_s);
    hasDefault = true;
    hasServer = false;
    EXPECT_EQ(choice(), u"folder"_s);
}

TEST_F(CalendarStoreChoice, lookingChoosesNothingForGood)
{
    hasServer = false;
    EXPECT_EQ(choice(), u"folder"_s);
    static_cast<void>(start().events({}, {}));
    EXPECT_FALSE(QFile::exists(file()));
    hasServer = true;
    EXPECT_EQ(choice(), u"server"_s);
}

TEST_F(CalendarStoreChoice, firstEventOnASessionBusSettlesIt)
{
    hasServer = false;
    makeEvent();
    hasServer = true;
    EXPECT_EQ(choice(), u"folder"_s);
    EXPECT_EQ(readFile(file()), "folder\n");
}

TEST_F(CalendarStoreChoice, changeOfAnEventSettlesNothing)
{
    CalendarEvent event;
    event.identifier = u"there already"_s;
    static_cast<void>(start().save(event, {}));
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(CalendarStoreChoice, eventWithoutASessionBusSettlesNothing)
{
    hasServer = isOnBus = false;
    makeEvent();
    EXPECT_FALSE(QFile::exists(file()));
    hasServer = isOnBus = true;
    EXPECT_EQ(choice(), u"server"_s);
}

TEST_F(CalendarStoreChoice, chosenServerThatIsOutOfReachIsAFailureAndNoSecondCalendar)
{
    makeEvent();
    hasServer = isOnBus = false;
    try {
        static_cast<void>(choice());
        ADD_FAILURE() << "another store took its place";
    } catch (const CalendarStoreError &error) {
        EXPECT_EQ(
            error.message(), u"The calendar server that holds your events cannot be reached."_s);
    }
    hasServer = isOnBus = true;
    EXPECT_EQ(choice(), u"server"_s);
    hasDefault = false;
    EXPECT_EQ(choice(), u"server"_s) << "its default calendar has gone, its events have not";
}

TEST_F(CalendarStoreChoice, programThatMetNoServerMeetsOneLater)
{
    makeEvent();
    hasServer = false;
    ChosenCalendars program = start();
    EXPECT_THROW(static_cast<void>(program.calendars({})), CalendarStoreError);
    hasServer = true;
    EXPECT_EQ(program.calendars({}).value(0).title, u"server"_s);
}

TEST_F(CalendarStoreChoice, serverThatDeniesAccessIsAskedAndNotPassedOver)
{
    grantsAccess = false;
    EXPECT_FALSE(start().requestAccess({}));
    EXPECT_EQ(choice(), u"server"_s);
}

TEST_F(CalendarStoreChoice, unreadableChoiceIsNone)
{
    writeFile(file(), "something else\n");
    EXPECT_EQ(choice(), u"server"_s);
    hasServer = false;
    EXPECT_EQ(choice(), u"folder"_s);
}

} // namespace

} // namespace velarc
