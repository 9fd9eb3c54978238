#include "base/secret.h"

#include <QString>

#include <gtest/gtest.h>

#include <utility>

namespace velarc {
namespace {

TEST(Secret, holdsItsBytesAndCopiesThemDeeply)
{
    Secret secret(QByteArrayView("sk-canary"));
    const Secret copy = secret;
    EXPECT_EQ(copy.bytes(), QByteArrayView("sk-canary"));
    EXPECT_NE(copy.bytes().data(), secret.bytes().data());
    secret = Secret();
    EXPECT_TRUE(secret.isEmpty());
    EXPECT_EQ(copy.bytes(), QByteArrayView("sk-canary"));
}

TEST(Secret, movedFromIsEmpty)
{
    Secret secret(QByteArrayView("sk"));
    const Secret taken = std::move(secret);
    EXPECT_EQ(taken.bytes(), QByteArrayView("sk"));
    EXPECT_TRUE(secret.isEmpty()); // NOLINT(bugprone-use-after-move): that it is empty is promised
}

TEST(Secret, isTrimmedOfWhiteSpaceAtBothEnds)
{
    EXPECT_EQ(Secret(QByteArrayView(" \n sk \t\n")).trimmed().bytes(), QByteArrayView("sk"));
    EXPECT_TRUE(Secret(QByteArrayView(" \n")).trimmed().isEmpty());
    EXPECT_EQ(Secret::fromText(u"s\u00E9").bytes(), QByteArrayView("s\xC3\xA9"));
}

TEST(Secret, wipedBytesAreZeroWhereNobodySharesThem)
{
    QByteArray bytes = QByteArray("sk-canary-of-some-length");
    bytes.detach();
    const char *where = bytes.constData();
    const QByteArray shared = bytes;
    wipe(bytes);
    EXPECT_EQ(shared, "sk-canary-of-some-length") << "what others hold stays";
    EXPECT_EQ(where, shared.constData());
    EXPECT_TRUE(bytes.isEmpty());
}

} // namespace
} // namespace velarc
