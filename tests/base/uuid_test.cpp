#include "base/uuid.h"
#include "support/printers.h"

#include <QSet>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr QStringView kText = u"6F9619FF-8B86-D011-B42D-00CF4FC964FF";

} // namespace

TEST(Uuid, isWrittenInUpperCaseWithHyphensAndWithoutBraces)
{
    const QUuid uuid(0x6f9619ff, 0x8b86, 0xd011, 0xb4, 0x2d, 0x00, 0xcf, 0x4f, 0xc9, 0x64, 0xff);
    EXPECT_EQ(uuidText(uuid), kText);
    EXPECT_EQ(uuidFromText(kText), uuid);
}

TEST(Uuid, isReadInEitherCase)
{
    EXPECT_EQ(uuidFromText(kText.toString().toLower()), uuidFromText(kText));
    EXPECT_EQ(uuidFromText(u"6f9619FF-8B86-d011-B42d-00CF4fc964FF"), uuidFromText(kText));
}

TEST(Uuid, ofZerosIsReadAsOne)
{
    EXPECT_EQ(uuidFromText(u"00000000-0000-0000-0000-000000000000"), QUuid());
}

TEST(Uuid, isReadInItsStrictFormOnly)
{
    const QString text = kText.toString();
    for (const QString &wrong : {QString(), u"{"_qs + text + u"}"_qs, text.chopped(1), text + u'0',
             u" "_qs + text, text + u'\n', QString(text).remove(u'-'),
             QString(text).replace(0, 1, u"G"_qs), QString(text).replace(0, 1, u"\uFF16"_qs),
             QString(text).replace(8, 1, u"0"_qs), QString(text).replace(7, 2, u"-F"_qs),
             QString(text).replace(8, 1, u"\u2010"_qs), u"{"_qs + text.mid(1, 34) + u"}"_qs}) {
        EXPECT_FALSE(uuidFromText(wrong)) << wrong.toStdString();
    }
}

TEST(Uuid, newOnesAreRandomAndReadBack)
{
    QSet<QUuid> seen;
    for (int round = 0; round < 1000; ++round) {
        const QUuid uuid = newUuid();
        EXPECT_EQ(uuid.version(), QUuid::Random);
        EXPECT_EQ(uuidFromText(uuidText(uuid)), uuid);
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 1000);
}

} // namespace velarc
