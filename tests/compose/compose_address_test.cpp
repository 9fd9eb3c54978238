#include "support/printers.h"
#include "system_actions/compose_address.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

QByteArray mailTo(const QStringList &recipients)
{
    return mailAddress({recipients, std::nullopt, QString()});
}

TEST(ComposeAddress, mailHasRecipientsASubjectAndABody)
{
    EXPECT_EQ(
        mailAddress({{u"ann@example.org"_s, u"bob@example.org"_s}, u"Hi there"_s, u"Hello"_s}),
        "mailto:ann@example.org,bob@example.org?subject=Hi%20there&body=Hello");
}

TEST(ComposeAddress, whatIsEmptyIsLeftOut)
{
    EXPECT_EQ(mailAddress({}), "mailto:");
    EXPECT_EQ(mailAddress({{}, u" \t"_s, u"Hello"_s}), "mailto:?body=Hello");
    EXPECT_EQ(mailAddress({{}, u" Hi "_s, QString()}), "mailto:?subject=Hi");
    EXPECT_EQ(messageAddress({}, QString()), "sms:");
    EXPECT_EQ(messageAddress({}, u"Hello"_s), "sms:?body=Hello");
}

TEST(ComposeAddress, marksOfAnAddressAreEncodedInAMail)
{
    EXPECT_EQ(mailAddress({{}, u"a&b=c?d#e"_s, u"1+1=2 & 100% \"x\" 'y' <z>"_s}),
        "mailto:?subject=a%26b%3Dc%3Fd%23e"
        "&body=1%2B1%3D2%20%26%20100%25%20%22x%22%20%27y%27%20%3Cz%3E");
    EXPECT_EQ(mailTo({u"ann+news@example.org"_s, u"x?body=y&z@example.org"_s}),
        "mailto:ann%2Bnews@example.org,x%3Fbody%3Dy%26z@example.org");
}

TEST(ComposeAddress, nameBesideAnAddressIsKept)
{
    EXPECT_EQ(mailTo({u"Ann Lee <ann@example.org>"_s}), "mailto:Ann%20Lee%20%3Cann@example.org%3E");
}

TEST(ComposeAddress, everyLineEndBecomesThatOfAMail)
{
    EXPECT_EQ(mailAddress({{}, std::nullopt, u"a\nb\r\nc\rd\n\ne"_s}),
        "mailto:?body=a%0D%0Ab%0D%0Ac%0D%0Ad%0D%0A%0D%0Ae");
    EXPECT_EQ(messageAddress({}, u"a\nb"_s), "sms:?body=a%0D%0Ab");
}

TEST(ComposeAddress, lettersBeyondAsciiAreUtf8)
{
    EXPECT_EQ(mailAddress({{u"jürgen@example.org"_s}, u"Grüße"_s, u"\U0001F600"_s}),
        "mailto:j%C3%BCrgen@example.org?subject=Gr%C3%BC%C3%9Fe&body=%F0%9F%98%80");
}

TEST(ComposeAddress, plusStandsInTheNumbersOfAMessageAndNotInItsText)
{
    EXPECT_EQ(messageAddress({u"+15551234"_s, u"+1 555 9876"_s}, u"1+1"_s),
        "sms:+15551234,+1%20555%209876?body=1%2B1");
}

TEST(ComposeAddress, halfACharacterIsReplaced)
{
    const QByteArray address = messageAddress({}, u"a"_s + QChar(0xD83D) + u"b"_s);
    EXPECT_TRUE(address == "sms:?body=a%EF%BF%BDb" || address == "sms:?body=a%3Fb")
        << address.constData();
}

} // namespace
} // namespace velarc
