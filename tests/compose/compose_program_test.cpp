// Mails and messages as programs of the desktop get them, without a portal.

#include "system_actions/compose_address.h"

#include <QUrl>
#include <QUrlQuery>

#include "compose/compose_fixture.h"

namespace velarc {
namespace {

const QString kMail = u"mailto"_s;
const QString kMessage = u"sms"_s;

// Everything that has ever been lost on the way from one program to another.
const QString kHardText = u"Hello \"Sam\" & 'Ann',\n\n1 + 1 = 2, 50% off?\r\nGrüße; #1 /path\\x\t"
                          u"\U0001F468\u200D\U0001F469\u200D\U0001F467 日本 $HOME `id` %41"_s;

// An address of exactly that many bytes.
ComposeDraft draftOf(qsizetype bytes)
{
    ComposeDraft draft{{u"ann@example.org"_s}, u"Hi"_s, u"ä"_s};
    const qsizetype missing = bytes - mailAddress(draft).size();
    draft.body += QString(missing, u'x');
    EXPECT_EQ(mailAddress(draft).size(), bytes);
    return draft;
}

class ComposeWithPrograms : public ComposeTest
{
protected:
    static void SetUpTestSuite()
    {
        registerProgram(kMail);
        registerProgram(kMessage);
    }
};

TEST_F(ComposeWithPrograms, mailArrivesWithEverythingPrefilled)
{
    const ComposeDraft draft{{u"ann@example.org"_s}, u" Hi "_s, u"Hello\nAnn"_s};
    EXPECT_EQ(mail(draft), ComposeOutcome::Opened);
    EXPECT_EQ(addressOpened(kMail), "mailto:ann@example.org?subject=Hi&body=Hello%0D%0AAnn");
}

TEST_F(ComposeWithPrograms, hardTextArrivesByteForByte)
{
    const ComposeDraft draft{{u"ann+news@example.org"_s}, u"50% & \"more\" + Ü"_s, kHardText};
    mail(draft);
    const QByteArray address = addressOpened(kMail);
    EXPECT_EQ(address, mailAddress(draft));
    const QUrl url(QString::fromLatin1(address), QUrl::StrictMode);
    EXPECT_TRUE(url.isValid());
    const QUrlQuery query(url);
    EXPECT_EQ(query.queryItemValue(u"subject"_s, QUrl::FullyDecoded), draft.subject);
    QString body = query.queryItemValue(u"body"_s, QUrl::FullyDecoded);
    EXPECT_EQ(body.replace(u"\r\n"_s, u"\n"_s), QString(kHardText).replace(u"\r\n"_s, u"\n"_s));
    EXPECT_EQ(url.path(QUrl::FullyDecoded), u"ann+news@example.org"_s);
}

TEST_F(ComposeWithPrograms, thousandRecipientsArriveInOrder)
{
    QStringList recipients;
    for (int index = 0; index < 1000; ++index) {
        recipients.append(u"person."_s + QString::number(index) + u"@example.org"_s);
    }
    mail({recipients, std::nullopt, u"Hello"_s});
    const QByteArray address = addressOpened(kMail);
    EXPECT_EQ(address, "mailto:" + recipients.join(u',').toUtf8() + "?body=Hello");
}

TEST_F(ComposeWithPrograms, emptyMailOpensAWindowAllTheSame)
{
    EXPECT_EQ(mail({}), ComposeOutcome::Opened);
    EXPECT_EQ(addressOpened(kMail), "mailto:");
}

TEST_F(ComposeWithPrograms, messageArrivesWithItsNumbers)
{
    EXPECT_EQ(
        message({u"+15551234"_s, u"+15559876"_s}, u"On my way\n+ Sam"_s), ComposeOutcome::Opened);
    EXPECT_EQ(addressOpened(kMessage), "sms:+15551234,+15559876?body=On%20my%20way%0D%0A%2B%20Sam");
    EXPECT_FALSE(hasOpened(kMail));
}

TEST_F(ComposeWithPrograms, hardMessageArrivesByteForByte)
{
    message({u"+15551234"_s}, kHardText);
    EXPECT_EQ(addressOpened(kMessage), messageAddress({u"+15551234"_s}, kHardText));
}

TEST_F(ComposeWithPrograms, longestAddressArrivesWhole)
{
    const ComposeDraft draft = draftOf(kMostAddressBytes);
    EXPECT_EQ(mail(draft), ComposeOutcome::Opened);
    EXPECT_EQ(addressOpened(kMail), mailAddress(draft));
}

TEST_F(ComposeWithPrograms, addressOfOneByteMoreIsRefused)
{
    EXPECT_EQ(kMostAddressBytes, 100'000);
    EXPECT_EQ(refusalOf([&] { mail(draftOf(kMostAddressBytes + 1)); }),
        u"Text is too long to hand to the mail program."_s);
    EXPECT_FALSE(hasOpened(kMail));
}

TEST_F(ComposeWithPrograms, messageThatIsTooLongIsRefused)
{
    EXPECT_EQ(refusalOf([&] { message({}, QString(100'000, u'x')); }),
        u"Text is too long to hand to the message program."_s);
    EXPECT_FALSE(hasOpened(kMessage));
}

TEST_F(ComposeWithPrograms, textCountsAsItIsEncoded)
{
    EXPECT_EQ(refusalOf([&] {
        mail({{}, std::nullopt, QString(17'000, u'ä')});
    }),
        u"Text is too long to hand to the mail program."_s);
}

TEST_F(ComposeWithPrograms, stopBeforeTheLaunchOpensNothing)
{
    stop.request_stop();
    EXPECT_THROW(mail({}), CancellationError);
    EXPECT_THROW(message({}, u"x"_s), CancellationError);
    EXPECT_FALSE(hasOpened(kMail));
    EXPECT_FALSE(hasOpened(kMessage));
}

TEST_F(ComposeWithPrograms, serviceMayGoBeforeItsTaskEnds)
{
    auto passing = std::make_unique<CommunicationComposeService>();
    const auto outcome = watch(passing->composeMessage({}, u"Hello"_s, {}));
    passing.reset();
    try {
        EXPECT_EQ(outcomeOf(outcome), ComposeOutcome::Opened);
    } catch (const CancellationError &) {
        ADD_FAILURE() << "the message was dropped";
    }
}

// --- Where there is none -------------------------------------------------------------------------

using ComposeWithoutPrograms = ComposeTest;

TEST_F(ComposeWithoutPrograms, mailSaysThatThereIsNoProgram)
{
    EXPECT_EQ(refusalOf([&] { mail({}); }), u"Mail compose service is unavailable."_s);
}

TEST_F(ComposeWithoutPrograms, messageSaysThatThereIsNoProgram)
{
    EXPECT_EQ(
        refusalOf([&] { message({}, u"x"_s); }), u"Messages compose service is unavailable."_s);
}

TEST_F(ComposeWithoutPrograms, missingProgramIsToldBeforeALongText)
{
    EXPECT_EQ(refusalOf([&] { mail(draftOf(kMostAddressBytes + 1)); }),
        u"Mail compose service is unavailable."_s);
}

class ComposeWithBrokenPrograms : public ComposeTest
{
protected:
    static void SetUpTestSuite()
    {
        registerBrokenProgram({kMail, u"/usr/bin/velarc-is-not-installed"_s, {}});
        registerBrokenProgram({kMessage, {}, u"/nowhere/at/all"_s});
    }
};

TEST_F(ComposeWithBrokenPrograms, programThatWasUninstalledIsNone)
{
    EXPECT_EQ(refusalOf([&] { mail({}); }), u"Mail compose service is unavailable."_s);
}

TEST_F(ComposeWithBrokenPrograms, programThatDoesNotStartGivesTheDesktopsReason)
{
    const QString reason = refusalOf([&] { message({}, u"x"_s); });
    EXPECT_TRUE(reason.contains(u"/nowhere/at/all"_s)) << reason.toStdString();
}

} // namespace
} // namespace velarc
