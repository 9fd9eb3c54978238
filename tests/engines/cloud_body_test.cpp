#include "base/json.h"
#include "engines/cloud_body.h"
#include "engines/cloud_call.h"

#include <random>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

QByteArray jsonStringOf(QStringView text)
{
    QByteArray body;
    appendJsonString(body, text);
    return body;
}

QByteArray base64Of(const QByteArray &bytes)
{
    QByteArray body;
    appendBase64(body, bytes);
    return body;
}

// A text of characters of every length, controls and quotes among them.
QString randomText(std::mt19937 &random)
{
    constexpr std::array<char32_t, 4> kBounds{0x20, 0x80, 0x800, 0x110000};
    QString text;
    const auto length = random() % 40;
    for (unsigned index = 0; index < length; ++index) {
        const char32_t character = static_cast<char32_t>(random()) % kBounds[random() % 4];
        if (!QChar::isSurrogate(character)) {
            text += QString::fromUcs4(&character, 1);
        }
        text += u"\"\\/\b\f\n\r\t\u007F"_s.mid(static_cast<qsizetype>(random() % 30), 1);
    }
    return text;
}

} // namespace

TEST(JsonString, escapesWhatMustBeEscapedAndNothingElse)
{
    EXPECT_EQ(jsonStringOf(u"a\"b\\c/d"), R"("a\"b\\c/d")");
    EXPECT_EQ(jsonStringOf(u"\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(jsonStringOf(u"\u0001\u001F\u007F\u2028"), "\"\\u0001\\u001f\x7F\u2028\"");
    EXPECT_EQ(jsonStringOf(QString(1, QChar(0))), R"("\u0000")");
    EXPECT_EQ(jsonStringOf(u""), R"("")");
}

TEST(JsonString, isWhatTheLibraryWrites)
{
    std::mt19937 random(20260220);
    for (int round = 0; round < 20'000; ++round) {
        const QString text = randomText(random);
        ASSERT_EQ(jsonStringOf(text), writeJson(jsonFromText(text)));
    }
}

TEST(JsonString, halfASurrogatePairStillGivesValidJSON)
{
    for (const QString &text :
        {u"a"_s + QChar(0xD83D), QChar(0xDE42) + u"b"_s, QString(QChar(0xD83D)) + u"x"_s}) {
        EXPECT_NO_THROW(static_cast<void>(parseJson(jsonStringOf(text))));
    }
}

TEST(Base64, ofEveryByteAndEveryLengthIsWhatQtWrites)
{
    std::mt19937 random(7);
    QByteArray bytes;
    for (int length = 0; length < 800; ++length) {
        ASSERT_EQ(base64Of(bytes), bytes.toBase64());
        bytes += static_cast<char>(length < 256 ? length : random());
    }
}

TEST(Base64, isAppendedToWhatStandsThere)
{
    QByteArray body = "data:";
    appendBase64(body, "ab");
    appendBase64(body, "");
    appendBase64(body, "abc");
    EXPECT_EQ(body, "data:YWI=YWJj");
}

TEST(RoomForBody, keepsBase64FromMovingTheBody)
{
    const QByteArray bytes(1'000'000, 'x');
    const QList<InputAttachment> attachments(
        3, attachmentOf(InputAttachmentKind::Image, u"p"_s, u"image/png"_s, bytes));
    QByteArray body = roomForBody(u"prompt", attachments);
    const char *place = body.constData();
    for (const InputAttachment &attachment : attachments) {
        appendBase64(body, attachment.bytes);
    }
    EXPECT_EQ(body.constData(), place);
}

} // namespace velarc
