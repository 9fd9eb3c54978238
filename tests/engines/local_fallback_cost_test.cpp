// What the local engine costs on texts of megabytes.

#include "engines/local_engine_call.h"
#include "support/cpu_time.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kLarge = 10'000'000;
constexpr qsizetype kSmall = 1'000'000;

// Ten times the text may take this many times as long: far from a hundred times, but with room for
// what caches and page faults do.
constexpr double kLinearRatio = 40;

// Below this a measurement says little of what grows.
constexpr double kMeasurable = 0.001;

// A sanitizer's build included.
constexpr double kSecondsForAShortBeginning = 1;
constexpr double kSecondsForAHostileInvoice = 60;

// `unit` repeated to `length` UTF-16 units.
QString textOf(const QString &unit, qsizetype length)
{
    return unit.repeated(length / unit.size() + 1).left(length);
}

double secondsFor(const QString &name, const QString &input)
{
    QString output;
    return bestCpuTime([&] { output = generateNamed(name, input); }).count();
}

void expectLinear(const QString &name, const QString &unit)
{
    const double small = secondsFor(name, textOf(unit, kSmall));
    const double large = secondsFor(name, textOf(unit, kLarge));
    EXPECT_LT(large, kLinearRatio * std::max(small, kMeasurable)) << name.toStdString();
}

} // namespace

TEST(LocalEngineCost, growsWithTheInputAndNoFaster)
{
    expectLinear(u"Brainstorm"_qs, u"an idea\n"_qs);
    expectLinear(u"Plain"_qs, u"an idea\n"_qs);
    expectLinear(u"Translate"_qs, u"a\n"_qs);
    expectLinear(u"Translate"_qs, u"\""_qs);
    expectLinear(u"Git"_qs, u"diff --git"_qs);
    expectLinear(u"Summary"_qs, u"\n"_qs);
    expectLinear(u"Summary"_qs, u"a b\n"_qs);
    expectLinear(u"One sentence"_qs, u". "_qs);
    expectLinear(u"Meeting"_qs, u" \n"_qs);
}

TEST(LocalEngineCost, aLongRestBehindWhatCountsIsNotRead)
{
    const QString sentences = textOf(u"A short one. "_qs, kLarge);
    const QString lines = textOf(u"A short one.\n"_qs, kLarge);
    constexpr int kCalls = 1000;
    const auto spent = cpuTime([&] {
        for (int call = 0; call < kCalls; ++call) {
            EXPECT_EQ(generateNamed(u"One-sentence"_qs, sentences), u"A short one."_qs);
            EXPECT_FALSE(generateNamed(u"Summary"_qs, sentences).isEmpty());
            EXPECT_FALSE(generateNamed(u"Git"_qs, lines).isEmpty());
            EXPECT_FALSE(generateNamed(u"Tasks"_qs, lines).isEmpty());
        }
    });
    EXPECT_LT(spent.count(), kSecondsForAShortBeginning);
}

TEST(LocalEngineCost, aSentenceOfMegabytesGivesItsFirstWords)
{
    EXPECT_EQ(generateNamed(u"One-sentence"_qs, textOf(u"w \n"_qs, kLarge)),
        u"w "_qs.repeated(23) + u"w."_qs);
    EXPECT_EQ(generateNamed(u"One-sentence"_qs, textOf(u"w"_qs, kLarge)).size(), kLarge + 1);
}

TEST(LocalEngineCost, aTitleOfOneEndlessCharacterIsThatCharacter)
{
    const QString accents = u"e"_qs + QString(kSmall, QChar(0x0301));
    EXPECT_TRUE(generateNamed(u"Git"_qs, accents).contains(accents));
}

class HostileInvoice : public testing::TestWithParam<const char16_t *>
{
};

TEST_P(HostileInvoice, endsInBoundedTime)
{
    const QString pattern = QString::fromUtf16(GetParam());
    const QString unit = pattern.section(u'|', 1);
    const QString text = pattern.section(u'|', 0, 0) + textOf(unit, kLarge);
    QString output;
    const auto spent = cpuTime([&] { output = generateNamed(u"Invoice"_qs, text); });
    EXPECT_TRUE(output.endsWith(u"\"line_items\": []\n}"));
    EXPECT_LT(spent.count(), kSecondsForAHostileInvoice);
}

// A beginning, then what is repeated.
INSTANTIATE_TEST_SUITE_P(OfTenMegabytes, HostileInvoice,
    testing::Values(u"|1", u"total |1", u"total| ", u"due date|\n", u"|invoice", u"|invoice ",
        u"inv| ", u"|total                    ", u"|inv  date  due date  total  ;",
        u"invoice number|a", u"due date|a ", u"| "));

TEST(LocalEngineCost, spacesThatNoValueFollowsLeaveTheFieldNull)
{
    const QString output = generateNamed(u"Invoice"_qs, u"inv"_qs + QString(100'000, u' '));
    EXPECT_TRUE(output.contains(u"\"invoice_number\": null,\n"));
}

TEST(LocalEngineCost, aValueOfMegabytesIsKeptWhole)
{
    const QString digits(kLarge, u'1');
    EXPECT_TRUE(generateNamed(u"Invoice"_qs, u"total "_qs + digits)
                    .contains(u"\"total_amount\": \""_qs + digits + u"\",\n"_qs));
}

} // namespace velarc
