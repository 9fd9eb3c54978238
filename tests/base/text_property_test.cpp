// The fast path of the character functions against a plain walk over all boundaries.

#include "base/text.h"
#include "support/printers.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>
#include <random>
#include <vector>

namespace velarc {

namespace {

constexpr int kTexts = 10'000;
constexpr int kMostPieces = 24;
constexpr unsigned kSeed = 20260220;

// Where each character of `text` ends, by ICU alone.
std::vector<qsizetype> characterEnds(const QString &text)
{
    static const std::unique_ptr<icu::BreakIterator> kIterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<icu::BreakIterator>(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    }();
    const icu::UnicodeString copy(
        reinterpret_cast<const char16_t *>(text.utf16()), static_cast<int32_t>(text.size()));
    kIterator->setText(copy);
    std::vector<qsizetype> ends;
    for (int32_t end = kIterator->next(); end != icu::BreakIterator::DONE;
         end = kIterator->next()) {
        ends.push_back(end);
    }
    return ends;
}

QString randomText(std::mt19937 &random)
{
    static const std::array<QString, 20> kPieces{u"a"_qs, u"Z"_qs, u" "_qs, u"1"_qs, u"\r"_qs,
        u"\n"_qs, u"\r\n"_qs, u"\t"_qs, u"\u0301"_qs, u"\u200D"_qs, u"\uFE0F"_qs, u"\u20E3"_qs,
        u"\U0001F468"_qs, u"\U0001F3FD"_qs, u"\U0001F1E9"_qs, u"\u0600"_qs, u"é"_qs, u"\u1112"_qs,
        QString(QChar(0xD83D)), QString(QChar(0xDC68))};
    QString text;
    const int pieces = std::uniform_int_distribution(0, kMostPieces)(random);
    for (int piece = 0; piece < pieces; ++piece) {
        // Half of the pieces are plain letters, so that long plain runs occur.
        const std::size_t last = std::bernoulli_distribution(0.5)(random) ? 3 : kPieces.size() - 1;
        text.append(kPieces[std::uniform_int_distribution<std::size_t>(0, last)(random)]);
    }
    return text;
}

} // namespace

TEST(CharacterProperty, everyPrefixAndCountAgreesWithThePlainWalk)
{
    std::mt19937 random(kSeed);
    for (int round = 0; round < kTexts; ++round) {
        const QString text = randomText(random);
        const std::vector<qsizetype> ends = characterEnds(text);
        const auto count = static_cast<qsizetype>(ends.size());
        ASSERT_EQ(characterCount(text), count) << text.toStdString();
        ASSERT_TRUE(characterPrefix(text, 0).isEmpty());
        ASSERT_EQ(characterPrefix(text, count + 1), QStringView(text)) << text.toStdString();
        for (qsizetype taken = 1; taken <= count; ++taken) {
            ASSERT_EQ(
                characterPrefix(text, taken).size(), ends[static_cast<std::size_t>(taken - 1)])
                << "round " << round << ", " << taken << " of " << text.toStdString();
        }
    }
}

} // namespace velarc
