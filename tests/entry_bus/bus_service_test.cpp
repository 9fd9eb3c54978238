#include "bus_caller.h"

#include "base/uuid.h"
#include "entry/bus_service.h"
#include "entry/desktop_names.h"
#include "entry/single_instance.h"

#include <gtest/gtest.h>

#include <future>

namespace velarc {
namespace {

using namespace std::chrono_literals;

class BusServiceTest : public ::testing::Test
{
protected:
    QStringList asked;
    SingleInstance instance{
        {[this](const ActivationContext &context) {
             asked.append(u"present "_s + context.activationToken + u'/' + context.startupId);
         },
            [this](const QUrl &url) { asked.append(url.toString()); },
            [this](const QUuid &action) { asked.append(uuidText(action)); },
            [this](const CopiedThing &thing) {
                asked.append((thing.kind == CopiedThing::Kind::Text ? u"text "_s : u"picture "_s)
                    + QString::fromLatin1(thing.bytes));
            }}};

    void SetUp() override { ASSERT_TRUE(qEnvironmentVariableIsSet("VELARC_SESSION")); }

    // What another process does, while this one turns its loop.
    template <typename Work> [[nodiscard]] static auto meanwhile(Work work)
    {
        auto outcome = std::async(std::launch::async, work);
        EXPECT_TRUE(
            waitForOthers([&] { return outcome.wait_for(1ms) == std::future_status::ready; }));
        return outcome.get();
    }

    [[nodiscard]] QStringList askedInTheEnd()
    {
        EXPECT_TRUE(waitForOthers([this] { return !asked.isEmpty(); }));
        return asked;
    }
};

TEST_F(BusServiceTest, nameIsTakenBehindTheObjectAndGoesWithIt)
{
    const BusCaller caller;
    EXPECT_FALSE(caller.knows(kApplicationId));
    {
        SingleInstance first({});
        ASSERT_TRUE(first.claim());
        EXPECT_TRUE(caller.knows(kApplicationId));
    }
    EXPECT_FALSE(caller.knows(kApplicationId));
}

TEST_F(BusServiceTest, laterStartHandsItsAddressAndItsTokenOver)
{
    ASSERT_TRUE(instance.claim());
    EXPECT_EQ(meanwhile([] {
        return handOver({{u"velarc://share-handoff"_s}, {u"token"_s, u"id"_s}});
    }),
        HandOver::Done);
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present token/id"_s, u"velarc://share-handoff"_s}));
}

TEST_F(BusServiceTest, whereNobodyRunsThereIsNobodyAndNobodyIsStarted)
{
    EXPECT_EQ(handOver({}), HandOver::NobodyThere);
}

// A window that just closes has given its name back, or its object already.
TEST_F(BusServiceTest, nameWithoutAnObjectCountsAsNobody)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerService(kApplicationId));
    EXPECT_EQ(meanwhile([] { return handOver({}); }), HandOver::NobodyThere);
    EXPECT_TRUE(bus.unregisterService(kApplicationId));
}

TEST_F(BusServiceTest, chosenActionIsSelected)
{
    ASSERT_TRUE(instance.claim());
    const QUuid action = newUuid();
    EXPECT_EQ(meanwhile([&] { return selectInWindow(action, {}, WindowStart::Never); }),
        WindowReply::Done);
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present /"_s, uuidText(action)}));
}

TEST_F(BusServiceTest, thingsAreCopiedToTheByte)
{
    ASSERT_TRUE(instance.claim());
    EXPECT_EQ(meanwhile([] {
        return copyInWindow({CopiedThing::Kind::Text, "a b"});
    }),
        WindowReply::Done);
    EXPECT_EQ(meanwhile([] {
        return copyInWindow({CopiedThing::Kind::Picture, "\x89PNG"});
    }),
        WindowReply::Done);
    EXPECT_EQ(asked, (QStringList{u"text a b"_s, u"picture \u0089PNG"_s}));
}

TEST_F(BusServiceTest, thingOfAnotherTypeIsRefused)
{
    ASSERT_TRUE(instance.claim());
    const BusCaller caller;
    QDBusMessage copy =
        QDBusMessage::createMethodCall(kApplicationId, kWindowPath, kWindowInterface, u"Copy"_s);
    copy << u"text/html"_s << QByteArrayLiteral("x");
    EXPECT_EQ(caller.call(copy).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    EXPECT_TRUE(asked.isEmpty());
}

TEST_F(BusServiceTest, unknownActionShowsTheWindowAndDoesNothing)
{
    ASSERT_TRUE(instance.claim());
    const BusCaller caller;
    QDBusMessage call = QDBusMessage::createMethodCall(
        kApplicationId, kWindowPath, kApplicationInterface, u"ActivateAction"_s);
    call << u"select-action"_s << QVariantList{u"no identifier"_s} << QVariantMap();
    EXPECT_EQ(caller.call(call).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(askedInTheEnd(), QStringList{u"present /"_s});
}

TEST_F(BusServiceTest, importIsAnsweredWithItsSummaryOrItsRefusal)
{
    TakeImportAnswer waiting;
    QByteArray imported;
    SingleInstance window({nullptr, nullptr, nullptr, nullptr,
        [&](const QByteArray &json, const TakeImportAnswer &answer) {
            imported = json;
            waiting = answer;
        }});
    ASSERT_TRUE(window.claim());
    const auto answered = [&](const ImportAnswer &given) {
        auto outcome =
            std::async(std::launch::async, [] { return importInWindow("[\"\u00e4\"]"); });
        EXPECT_TRUE(waitForOthers([&] { return waiting != nullptr; }));
        std::exchange(waiting, nullptr)(given);
        EXPECT_TRUE(
            waitForOthers([&] { return outcome.wait_for(1ms) == std::future_status::ready; }));
        return outcome.get();
    };
    const ImportReply done = answered({ImportAnswer::Outcome::Imported, u"1 new"_s});
    EXPECT_EQ(done.reply, WindowReply::Done);
    EXPECT_EQ(done.text, u"1 new"_s);
    EXPECT_EQ(imported, QByteArray("[\"\u00e4\"]"));
    const ImportReply refused = answered({ImportAnswer::Outcome::Refused, u"No."_s});
    EXPECT_EQ(refused.reply, WindowReply::Failed);
    EXPECT_EQ(refused.text, u"No."_s);
}

TEST_F(BusServiceTest, importWithoutAWindowIsNobodys)
{
    EXPECT_EQ(meanwhile([] { return importInWindow("[]"); }).reply, WindowReply::NoWindow);
}

} // namespace
} // namespace velarc
