// Mails through the desktop's portal, with a mail program beside it to fall back to.

#include "fakes/scripted_portal.h"
#include "support/wait_until.h"
#include "system_actions/compose_address.h"

#include "compose/compose_fixture.h"

namespace velarc {
namespace {

using Answer = ScriptedPortal::Answer;

const ComposeDraft kDraft{
    {u"ann@example.org"_s, u"bob+news@example.org"_s}, u" Hi "_s, u"1 + 1\n\u00FC \U0001F600"_s};

class ComposeThroughPortal : public ComposeTest
{
protected:
    ScriptedPortal portal;

    static void SetUpTestSuite()
    {
        registerProgram(u"mailto"_s);
        registerProgram(u"sms"_s);
    }

    void expectTheProgramHasIt(const ComposeDraft &draft)
    {
        EXPECT_EQ(mail(draft), ComposeOutcome::Opened);
        EXPECT_EQ(addressOpened(u"mailto"_s), mailAddress(draft));
    }
};

TEST_F(ComposeThroughPortal, draftArrivesAsItIs)
{
    EXPECT_EQ(mail(kDraft), ComposeOutcome::Opened);
    ASSERT_EQ(portal.drafts.size(), 1);
    const QVariantMap &options = portal.drafts.first();
    EXPECT_EQ(options.value(u"addresses"_s).toStringList(), kDraft.recipients);
    EXPECT_EQ(options.value(u"subject"_s).toString(), u"Hi"_s);
    EXPECT_EQ(options.value(u"body"_s).toString(), kDraft.body);
    EXPECT_FALSE(options.contains(u"address"_s));
    EXPECT_FALSE(hasOpened(u"mailto"_s));
}

TEST_F(ComposeThroughPortal, whatIsEmptyIsLeftOut)
{
    EXPECT_EQ(mail({{}, u"  "_s, QString()}), ComposeOutcome::Opened);
    const QStringList keys = portal.drafts.first().keys();
    EXPECT_EQ(keys, (QStringList{u"body"_s, u"handle_token"_s}));
}

TEST_F(ComposeThroughPortal, thereIsNoLimitToTheText)
{
    const QString body = QString(1'000'000, u'ä');
    EXPECT_EQ(mail({{u"ann@example.org"_s}, std::nullopt, body}), ComposeOutcome::Opened);
    EXPECT_TRUE(portal.drafts.first().value(u"body"_s).toString() == body);
}

TEST_F(ComposeThroughPortal, textWithANullAndHalfACharacterArrivesWithoutThem)
{
    const QString body = u"a"_s + QChar(u'\0') + u"b"_s + QChar(0xD83D) + u"c"_s;
    EXPECT_EQ(mail({{}, std::nullopt, body}), ComposeOutcome::Opened);
    const QString arrived = portal.drafts.first().value(u"body"_s).toString();
    EXPECT_TRUE(arrived.startsWith(u"ab"_s) && arrived.endsWith(u"c"_s)) << arrived.toStdString();
}

TEST_F(ComposeThroughPortal, userWhoCallsItOffClosesTheMail)
{
    portal.answer = Answer::IsCancelled;
    EXPECT_EQ(mail(kDraft), ComposeOutcome::Closed);
    EXPECT_FALSE(hasOpened(u"mailto"_s));
}

TEST_F(ComposeThroughPortal, mailProgramTakesWhatThePortalCouldNotOpen)
{
    portal.answer = Answer::Fails;
    expectTheProgramHasIt(kDraft);
}

TEST_F(ComposeThroughPortal, mailProgramTakesWhatThePortalRefuses)
{
    portal.answer = Answer::RefusesTheCall;
    expectTheProgramHasIt({{u"no address"_s}, std::nullopt, u"Hello"_s});
    EXPECT_EQ(portal.drafts.size(), 1);
}

TEST_F(ComposeThroughPortal, mailProgramTakesWhatAPortalLeftBehindThatWent)
{
    portal.answer = Answer::GoesAway;
    expectTheProgramHasIt(kDraft);
}

TEST_F(ComposeThroughPortal, limitHoldsForWhatTheMailProgramTakesInstead)
{
    portal.answer = Answer::Fails;
    EXPECT_EQ(refusalOf([&] {
        mail({{}, std::nullopt, QString(100'000, u'x')});
    }),
        u"Text is too long to hand to the mail program."_s);
}

TEST_F(ComposeThroughPortal, portalWithoutMailsIsNone)
{
    portal.version.reset();
    expectTheProgramHasIt(kDraft);
    EXPECT_TRUE(portal.drafts.isEmpty());
}

TEST_F(ComposeThroughPortal, oldPortalTakesOneRecipient)
{
    portal.version = 1;
    EXPECT_EQ(mail({{u"ann@example.org"_s}, std::nullopt, u"Hello"_s}), ComposeOutcome::Opened);
    EXPECT_EQ(portal.drafts.first().value(u"address"_s).toString(), u"ann@example.org"_s);
    EXPECT_FALSE(hasOpened(u"mailto"_s));
}

TEST_F(ComposeThroughPortal, severalRecipientsGoPastAnOldPortal)
{
    portal.version = 2;
    expectTheProgramHasIt(kDraft);
    EXPECT_TRUE(portal.drafts.isEmpty());
}

TEST_F(ComposeThroughPortal, requestUnderAnotherNameIsHeardToo)
{
    portal.usesOwnHandles = true;
    portal.answer = Answer::NeverComes;
    const auto outcome = watch(service.composeMail(kDraft, stop.get_token()));
    ASSERT_TRUE(waitUntil([&] { return portal.drafts.size() == 1; }));
    QTimer again; // until the caller knows the name
    again.callOnTimeout([&] { portal.respond(1); });
    again.start();
    EXPECT_EQ(outcomeOf(outcome), ComposeOutcome::Closed);
}

TEST_F(ComposeThroughPortal, stopWithdrawsTheQuestion)
{
    portal.answer = Answer::NeverComes;
    const auto outcome = watch(service.composeMail(kDraft, stop.get_token()));
    ASSERT_TRUE(waitUntil([&] { return portal.drafts.size() == 1; }));
    EXPECT_FALSE(outcome->isThere());
    stop.request_stop();
    EXPECT_FALSE(outcome->isThere());
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
    EXPECT_TRUE(waitUntil([&] { return portal.withdrawn == 1; }));
    EXPECT_FALSE(hasOpened(u"mailto"_s));
}

TEST_F(ComposeThroughPortal, messagesDoNotGoThroughIt)
{
    message({u"+15551234"_s}, u"Hello"_s);
    EXPECT_EQ(addressOpened(u"sms"_s), "sms:+15551234?body=Hello");
    EXPECT_TRUE(portal.drafts.isEmpty());
}

// --- Without a mail program ----------------------------------------------------------------------

class ComposeThroughPortalAlone : public ComposeTest
{
protected:
    ScriptedPortal portal;
};

TEST_F(ComposeThroughPortalAlone, portalIsEnough)
{
    EXPECT_EQ(mail(kDraft), ComposeOutcome::Opened);
    EXPECT_EQ(portal.drafts.size(), 1);
}

TEST_F(ComposeThroughPortalAlone, portalThatFindsNoProgramLeavesTheServiceUnavailable)
{
    portal.answer = Answer::Fails;
    EXPECT_EQ(refusalOf([&] { mail(kDraft); }), u"Mail compose service is unavailable."_s);
}

} // namespace
} // namespace velarc
