#include "base/uuid.h"
#include "entry/window_requests.h"
#include "support/printers.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

class WindowRequestsTest : public ::testing::Test
{
protected:
    QStringList asked;

    WindowRequests requests{{[this](const ActivationContext &context) {
                                 asked.append(u"present "_s + context.activationToken);
                             },
        [this](const QUrl &url) { asked.append(url.toString()); },
        [this](const QUuid &action) { asked.append(uuidText(action)); },
        [this](const CopiedThing &thing) { asked.append(QString::fromUtf8(thing.bytes)); }}};

    [[nodiscard]] QStringList askedInTheEnd()
    {
        EXPECT_TRUE(waitUntil([this] { return !asked.isEmpty(); }));
        return asked;
    }
};

TEST_F(WindowRequestsTest, addressIsOpenedBehindTheWindowAndNotInsideTheCall)
{
    requests.open({u"velarc://share-handoff"_s}, {u"token"_s, {}});
    EXPECT_TRUE(asked.isEmpty());
    EXPECT_TRUE(requests.wasAskedFor());
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present token"_s, u"velarc://share-handoff"_s}));
}

TEST_F(WindowRequestsTest, tenThousandCallsCostOneOpening)
{
    for (int call = 0; call < 10'000; ++call) {
        requests.open({u"velarc://share-result?"_s + QString::number(call)},
            {u"token"_s + QString::number(call), {}});
    }
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present token9999"_s, u"velarc://share-result"_s}));
}

TEST_F(WindowRequestsTest, schemeAndHostAreFoldedAndTheRestIsNotRead)
{
    requests.open({u"VELARC://SHARE-HANDOFF/path?query#fragment"_s}, {});
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present "_s, u"velarc://share-handoff"_s}));
}

TEST_F(WindowRequestsTest, everythingElseShowsTheWindowAndDoesNothing)
{
    requests.open({u"velarc://share-handoffs"_s, u"velarc:share-handoff"_s, u"velarc://"_s,
                      u"http://share-handoff"_s, u"share-handoff"_s, u"file:///etc/passwd"_s,
                      u"velarc://share-\u0001handoff"_s, QString(), u"\u0000\u001B[31m"_s,
                      u"velarc://share-handoff/"_s + QString(70'000, u'x')},
        {});
    EXPECT_EQ(askedInTheEnd(), QStringList{u"present "_s});
}

TEST_F(WindowRequestsTest, differentAddressesAreOpenedInTheirOrder)
{
    requests.open({u"velarc://share-result"_s, u"velarc://share-handoff"_s}, {});
    EXPECT_EQ(askedInTheEnd(),
        (QStringList{u"present "_s, u"velarc://share-result"_s, u"velarc://share-handoff"_s}));
}

TEST_F(WindowRequestsTest, addressMayBeOpenedAgainLater)
{
    requests.open({u"velarc://share-result"_s}, {});
    static_cast<void>(askedInTheEnd());
    asked.clear();
    requests.open({u"velarc://share-result"_s}, {});
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present "_s, u"velarc://share-result"_s}));
}

TEST_F(WindowRequestsTest, latestChosenActionIsSelected)
{
    const QUuid latest = newUuid();
    requests.select(newUuid(), {});
    requests.select(latest, {u"t"_s, {}});
    EXPECT_EQ(askedInTheEnd(), (QStringList{u"present t"_s, uuidText(latest)}));
}

TEST_F(WindowRequestsTest, copyIsDoneAtOnceAndShowsNothing)
{
    requests.copy({CopiedThing::Kind::Text, "copied"});
    EXPECT_EQ(asked, QStringList{u"copied"_s});
    EXPECT_FALSE(requests.wasAskedFor());
}

} // namespace
} // namespace velarc
