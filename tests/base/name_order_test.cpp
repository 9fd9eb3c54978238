#include "base/locale_text.h"
#include "support/environment.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <random>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

int sign(int number)
{
    return (number > 0) - (number < 0);
}

QString randomName(std::mt19937 &random)
{
    static const QString kUnits = u"aAbBzZ\u00E9\u00C9\u0301 -_1\u00DF\u0130\u4E2D\u0434"_qs
        + QChar(0xD83D) + QChar(0xDE00) + QChar(0);
    QString name;
    const int length = std::uniform_int_distribution(0, 6)(random);
    for (int unit = 0; unit < length; ++unit) {
        name.append(kUnits[std::uniform_int_distribution<qsizetype>(0, kUnits.size() - 1)(random)]);
    }
    return name;
}

} // namespace

TEST(NameOrder, ignoresCase)
{
    const NameOrder order;
    EXPECT_EQ(order.compare(u"Meeting NOTES", u"meeting notes"), 0);
    EXPECT_EQ(order.compare(u"\u00C9", u"\u00E9"), 0);
    EXPECT_EQ(order.sortKey(u"ABC"), order.sortKey(u"abc"));
}

TEST(NameOrder, keepsAccentsApart)
{
    const NameOrder order;
    EXPECT_LT(order.compare(u"resume", u"r\u00E9sum\u00E9"), 0);
    EXPECT_GT(order.compare(u"R\u00E9sum\u00E9", u"resume"), 0);
    EXPECT_EQ(order.compare(u"e\u0301", u"\u00E9"), 0);
}

TEST(NameOrder, ordersAsADictionaryDoes)
{
    const NameOrder order;
    EXPECT_LT(order.compare(u"apple", u"Banana"), 0);
    EXPECT_LT(order.compare(u"\u00E9clair", u"zebra"), 0);
    EXPECT_LT(order.compare(u"", u"a"), 0);
    EXPECT_EQ(order.compare(u"", QStringView()), 0);
}

TEST(NameOrder, followsTheUsersLanguage)
{
    const ScopedVariable swedish("LC_ALL", "sv_SE.UTF-8");
    EXPECT_GT(NameOrder().compare(u"\u00E4", u"z"), 0);
    const ScopedVariable german("LC_ALL", "de_DE.UTF-8");
    EXPECT_LT(NameOrder().compare(u"\u00E4", u"z"), 0);
}

TEST(NameOrder, standsInEveryLocale)
{
    for (const char *name : {"C", "POSIX", "xx_YY.UTF-8", "no such locale"}) {
        const ScopedVariable locale("LC_ALL", name);
        EXPECT_LT(NameOrder().compare(u"a", u"b"), 0) << name;
        EXPECT_EQ(NameOrder().compare(u"a", u"A"), 0) << name;
        EXPECT_LT(NameOrder().compare(u"B", u"c"), 0) << name;
    }
}

TEST(NameOrder, sortKeysCompareAsTheNamesDo)
{
    const NameOrder order;
    std::mt19937 random(20260220);
    for (int round = 0; round < 20'000; ++round) {
        const QString left = randomName(random);
        const QString right = randomName(random);
        ASSERT_EQ(sign(order.sortKey(left).compare(order.sortKey(right))),
            sign(order.compare(left, right)))
            << left.toStdString() << " and " << right.toStdString();
    }
}

TEST(NameOrder, sortKeyOfALongNameIsWhole)
{
    const NameOrder order;
    const QString longName = u"\u4E2D\u00E9\U0001F600"_qs.repeated(10'000);
    EXPECT_LT(order.sortKey(longName + u'a'), order.sortKey(longName + u'b'));
    EXPECT_EQ(order.sortKey(longName + u'a'), order.sortKey(longName + u'A'));
}

} // namespace velarc
