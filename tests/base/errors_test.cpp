#include "base/errors.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

} // namespace

TEST(Errors, userFacingOnesTellTheirSentence)
{
    const UserFacingError error(u"Caf\u00E9 \U0001F600 is closed."_qs);
    EXPECT_EQ(error.message(), u"Caf\u00E9 \U0001F600 is closed."_qs);
    EXPECT_STREQ(error.what(), "Caf\u00E9 \U0001F600 is closed.");
    EXPECT_EQ(errorDescription(error), error.message());
}

TEST(Errors, sentenceIsWholeWhateverItHolds)
{
    const QString odd = u"a"_qs + QChar(0) + QString(QChar(0xD800)) + u"b\n"_qs;
    EXPECT_EQ(errorDescription(UserFacingError(odd)), odd);
}

TEST(Errors, othersAreReadAsUtf8)
{
    EXPECT_EQ(errorDescription(std::runtime_error("na\u00EFve")), u"na\u00EFve"_qs);
}

TEST(Errors, copyKeepsTheSentence)
{
    const auto copied = [] {
        const UserFacingError original(u"gone"_qs);
        return UserFacingError(original);
    }();
    EXPECT_STREQ(copied.what(), "gone");
}

TEST(Errors, cancellationIsNoUserFacingError)
{
    EXPECT_THROW(throw CancellationError(), std::exception);
    const CancellationError error;
    const std::exception &base = error;
    EXPECT_EQ(dynamic_cast<const UserFacingError *>(&base), nullptr);
}

} // namespace velarc
