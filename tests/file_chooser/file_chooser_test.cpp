// The desktop's file dialog as the window asks for it.

#include "base/errors.h"
#include "fakes/scripted_portal.h"
#include "support/wait_until.h"
#include "ui/portal_file_chooser.h"

#include <QDir>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Answer = ScriptedPortal::Answer;
using Outcome = FileChoice::Outcome;

struct Asked
{
    std::optional<FileChoice> choice;
    bool isStopped = false;
};

QCoro::Task<void> ask(std::shared_ptr<Asked> asked, FileWish wish, std::stop_token stop)
{
    PortalFileChooser chooser;
    try {
        asked->choice = co_await chooser.choose(wish, stop);
    } catch (const CancellationError &) {
        asked->isStopped = true;
    }
}

const FileWish kSave{FileWish::Purpose::Save, u"Export"_s, u"Save it"_s, u"a.json"_s};
const FileWish kOpen{FileWish::Purpose::Open, u"Import"_s, u"Take it"_s, QString()};

FileChoice choiceFor(const FileWish &wish)
{
    const auto asked = std::make_shared<Asked>();
    static_cast<void>(ask(asked, wish, {}));
    EXPECT_TRUE(waitUntil([&] { return asked->choice.has_value(); }));
    return asked->choice.value_or(FileChoice());
}

class FileChooserPortal : public ::testing::Test
{
protected:
    ScriptedPortal portal;

    FileChooserPortal()
    {
        portal.results = {{u"uris"_s, QStringList{u"file:///tmp/a%20b.json"_s}}};
    }
};

TEST_F(FileChooserPortal, givesTheFileThatTheUserSavesTo)
{
    const FileChoice choice = choiceFor(kSave);
    EXPECT_EQ(choice.outcome, Outcome::Chosen);
    EXPECT_EQ(choice.path, u"/tmp/a b.json"_s);
    EXPECT_EQ(portal.method, u"SaveFile"_s);
    EXPECT_EQ(portal.title, u"Export"_s);
    const QVariantMap &options = portal.drafts.first();
    EXPECT_EQ(options.value(u"current_name"_s).toString(), u"a.json"_s);
    EXPECT_EQ(options.value(u"accept_label"_s).toString(), u"Save it"_s);
    EXPECT_EQ(options.value(u"current_folder"_s).toByteArray(), QDir::homePath().toUtf8() + '\0');
}

TEST_F(FileChooserPortal, givesTheFileThatTheUserOpens)
{
    EXPECT_EQ(choiceFor(kOpen).path, u"/tmp/a b.json"_s);
    EXPECT_EQ(portal.method, u"OpenFile"_s);
    EXPECT_FALSE(portal.drafts.first().contains(u"current_name"_s));
}

TEST_F(FileChooserPortal, followsARequestThatThePortalNamesItself)
{
    portal.usesOwnHandles = true;
    portal.answer = Answer::NeverComes;
    const auto asked = std::make_shared<Asked>();
    static_cast<void>(ask(asked, kOpen, {}));
    EXPECT_TRUE(waitUntil([&] { return portal.drafts.size() == 1; }));
    for (int turn = 0; turn < 20 && !asked->choice; ++turn) {
        portal.respond(0); // as soon as the caller has heard of the name
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    ASSERT_TRUE(waitUntil([&] { return asked->choice.has_value(); }));
    EXPECT_EQ(asked->choice->outcome, Outcome::Chosen);
}

TEST_F(FileChooserPortal, tellsThatTheUserDismissedIt)
{
    portal.answer = Answer::IsCancelled;
    EXPECT_EQ(choiceFor(kOpen).outcome, Outcome::Dismissed);
}

TEST_F(FileChooserPortal, aFileElsewhereCountsAsNone)
{
    portal.results = {{u"uris"_s, QStringList{u"https://example.org/a.json"_s}}};
    EXPECT_EQ(choiceFor(kOpen).outcome, Outcome::Dismissed);
}

TEST_F(FileChooserPortal, aPortalThatFailsRefusesOrGoesHasNoDialog)
{
    for (const Answer answer : {Answer::Fails, Answer::RefusesTheCall, Answer::GoesAway}) {
        portal.answer = answer;
        EXPECT_EQ(choiceFor(kOpen).outcome, Outcome::NoDialog);
    }
}

TEST_F(FileChooserPortal, aNullInANameDoesNotCutTheBus)
{
    FileWish wish = kSave;
    wish.title = u"a\0b"_s;
    EXPECT_EQ(choiceFor(wish).outcome, Outcome::Chosen);
    EXPECT_EQ(portal.title, u"ab"_s);
}

TEST_F(FileChooserPortal, aStopTakesTheDialogAway)
{
    portal.answer = Answer::NeverComes;
    const auto asked = std::make_shared<Asked>();
    std::stop_source stop;
    static_cast<void>(ask(asked, kOpen, stop.get_token()));
    EXPECT_TRUE(waitUntil([&] { return portal.drafts.size() == 1; }));
    stop.request_stop();
    EXPECT_TRUE(waitUntil([&] { return asked->isStopped && portal.withdrawn == 1; }));
}

TEST(FileChooserWithoutPortal, hasNoDialog)
{
    EXPECT_EQ(choiceFor(kOpen).outcome, Outcome::NoDialog);
    EXPECT_EQ(choiceFor(kSave).outcome, Outcome::NoDialog);
}

} // namespace

} // namespace velarc
