// The store when the session's bus ends under it.

#include "keyring_fixture.h"

#include "fakes/silent_bus_name.h"

#include <QRegularExpression>

#include <csignal>

namespace velarc {

namespace {

class KeyringBusThatEnds : public KeyringTest
{
};

void killBus()
{
    const ToolRun run = runTool(u"gdbus"_s,
        {u"call"_s, u"--session"_s, u"--dest"_s, u"org.freedesktop.DBus"_s, u"--object-path"_s,
            u"/org/freedesktop/DBus"_s, u"--method"_s,
            u"org.freedesktop.DBus.GetConnectionUnixProcessID"_s, u"org.freedesktop.DBus"_s});
    const auto match = QRegularExpression(u"uint32 (\\d+)"_s).match(QString::fromUtf8(run.output));
    ASSERT_TRUE(match.hasMatch()) << run.output.toStdString();
    ASSERT_EQ(::kill(match.captured(1).toInt(), SIGKILL), 0);
}

} // namespace

TEST_F(KeyringBusThatEnds, aCallThatIsOutReadsAsNoneAndTheProgramGoesOn)
{
    const SilentBusName service("org.freedesktop.secrets");
    const auto reading = watch(store->apiKey(AIProvider::OpenAI, {}));
    ASSERT_TRUE(service.waitForCalls(1));
    killBus();
    EXPECT_FALSE(outcomeOf(reading).has_value());
    EXPECT_TRUE(store->providersWithStoredKey(kLongBound).isEmpty());
}

} // namespace velarc
