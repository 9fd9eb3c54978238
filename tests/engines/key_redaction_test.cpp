#include "engines/key_redaction.h"
#include "support/cpu_time.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

} // namespace

TEST(KeyRedaction, everyPlaceOfTheKeyIsReplaced)
{
    const KeyRedaction redaction(Secret("sk-12345"));
    EXPECT_EQ(redaction.of(QByteArray("sk-12345 and ask-123456")), "[API key] and a[API key]6");
    EXPECT_EQ(redaction.of(u"sk-12345sk-12345"_s), u"[API key][API key]"_s);
    EXPECT_EQ(redaction.of(u"ë sk-12345 🙂"_s), u"ë [API key] 🙂"_s);
}

TEST(KeyRedaction, otherTextsStayAsTheyAre)
{
    const KeyRedaction redaction(Secret("sk-12345"));
    EXPECT_EQ(redaction.of(QByteArray("sk-1234 \xFF")), "sk-1234 \xFF");
    EXPECT_EQ(redaction.of(u"SK-12345"_s), u"SK-12345"_s);
    EXPECT_EQ(redaction.of(QString()), QString());
}

TEST(KeyRedaction, aKeyAsShortAsAWordIsNotLookedFor)
{
    EXPECT_EQ(KeyRedaction(Secret("key")).of(u"Bad key"_s), u"Bad key"_s);
    EXPECT_EQ(KeyRedaction(Secret("1234567")).of(QByteArray("1234567")), "1234567");
    EXPECT_EQ(KeyRedaction(Secret("12345678")).of(QByteArray("12345678")), "[API key]");
    EXPECT_EQ(KeyRedaction().of(u"any"_s), u"any"_s);
}

TEST(KeyRedaction, aBodyFullOfKeysCostsNoMoreThanItsLength)
{
    const KeyRedaction redaction(Secret("sk-12345"));
    const auto secondsFor = [&](qsizetype keys) {
        const QByteArray body = QByteArray("sk-12345").repeated(keys);
        return bestCpuTime([&] { EXPECT_EQ(redaction.of(body).size(), keys * 9); }).count();
    };
    EXPECT_LT(secondsFor(1'000'000), 40 * std::max(secondsFor(100'000), 0.001));
}

} // namespace velarc
