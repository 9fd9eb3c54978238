#include "system_actions/ical_text.h"

#include <gtest/gtest.h>

#include <chrono>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

const QByteArray kFile = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:a\r\n"
                         "SUMMARY;LANGUAGE=de:Zahn\\, Arzt\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";

const IcalComponent &eventIn(const IcalComponent &file)
{
    return *file.components("VCALENDAR").at(0)->components("VEVENT").at(0);
}

TEST(IcalText, whatWasReadIsWrittenByteByByte)
{
    for (const QByteArray &text :
        {kFile, QByteArray(kFile).replace("\r\n", "\n"), QByteArray("\xEF\xBB\xBF" + kFile),
            kFile.chopped(2), QByteArray("\r\n\r\n" + kFile + "\r\n"),
            QByteArray(
                "begin:vcalendar\nBegin:VEvent\nSUM\n MARY:fol\n\t ded\n \nX-ODD;A=\"b:c;d\":e\n"
                "no property at all\nX-CAFÉ:\xff\xfe\nBEGIN:VALARM\nEND:VALARM\nLATE:1\n"
                "END:VEVENT\nEND:VCALENDAR\nBEGIN:VCALENDAR\nEND:VCALENDAR")}) {
        const auto file = readIcal(text);
        ASSERT_TRUE(file) << text.toStdString();
        EXPECT_EQ(writeIcal(*file), text);
    }
}

TEST(IcalText, brokenFilesAreNone)
{
    for (const QByteArray &text :
        {QByteArray(), QByteArray("hello"), QByteArray("BEGIN:VCALENDAR\r\n"),
            QByteArray("END:VCALENDAR\r\n"), QByteArray("BEGIN:A\nBEGIN:B\nEND:A\nEND:B\n"),
            QByteArray("BEGIN:A\nEND:A\nEND:A\n"), QByteArray("\x89PNG\r\n\x1a\n"),
            QByteArray("BEGIN:A\n\0END:A\n", 15), kFile.first(kFile.size() / 2)}) {
        EXPECT_FALSE(readIcal(text)) << text.toStdString();
    }
}

TEST(IcalText, filesThatAreMadeToCostAreNoneAndEndSoon)
{
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(readIcal(QByteArray("BEGIN:A\n").repeated(100'000)));
    EXPECT_FALSE(
        readIcal(QByteArray("BEGIN:A\n").repeated(17) + QByteArray("END:A\n").repeated(17)));
    EXPECT_TRUE(
        readIcal(QByteArray("BEGIN:A\n").repeated(16) + QByteArray("END:A\n").repeated(16)));
    EXPECT_FALSE(readIcal("BEGIN:A\n" + QByteArray("X:\n").repeated(kMaxIcalLines) + "END:A\n"));
    EXPECT_FALSE(readIcal("BEGIN:A\nX:" + QByteArray("\n ").repeated(kMaxIcalLines) + "\nEND:A\n"));
    EXPECT_FALSE(readIcal("BEGIN:A\nX:" + QByteArray(kMaxIcalBytes, 'x') + "\nEND:A\n"));
    EXPECT_TRUE(readIcal("BEGIN:A\nX:" + QByteArray(kMaxIcalBytes / 2, ';') + "\nEND:A\n"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(IcalText, propertyIsFoundByNameWithItsParameters)
{
    const auto file =
        readIcal("BEGIN:VCALENDAR\nBEGIN:VEVENT\n"
                 "x-two;first=1;Second=\"a:b;c\",d;EMPTY=:value: with colon\nX-TWO:later\n"
                 "FOLDED:ab\n cd\n\tef\nEND:VEVENT\nEND:VCALENDAR\n");
    const IcalComponent &event = eventIn(*file);
    const IcalProperty *property = event.find("X-TWO");
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(property->value, "value: with colon");
    EXPECT_EQ(property->parameter("FIRST"), QByteArray("1"));
    EXPECT_EQ(property->parameter("SECOND"), QByteArray("a:b;c"));
    EXPECT_EQ(property->parameter("EMPTY"), QByteArray(""));
    EXPECT_EQ(property->parameter("THIRD"), std::nullopt);
    EXPECT_EQ(event.find("FOLDED")->value, "abcdef");
    EXPECT_EQ(event.all("X-TWO").size(), 2U);
    EXPECT_EQ(event.find("UID"), nullptr);
}

TEST(IcalText, changeOfOnePropertyLeavesTheOtherBytes)
{
    auto file = readIcal(kFile);
    auto &calendar = std::get<IcalComponent>(file->nodes[0].content);
    auto &event = std::get<IcalComponent>(calendar.nodes[1].content);
    event.set(icalProperty("SUMMARY", {}, "New"));
    event.set(icalProperty("LOCATION", {}, "There"));
    event.add(icalProperty("EXDATE", {}, "20250101"));
    event.removeAll("UID");
    EXPECT_EQ(writeIcal(*file),
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nSUMMARY:New\r\nLOCATION:There\r\n"
        "EXDATE:20250101\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
}

TEST(IcalText, newLinesEndAsTheOthersDo)
{
    auto file = readIcal(QByteArray(kFile).replace("\r\n", "\n"));
    auto &calendar = std::get<IcalComponent>(file->nodes[0].content);
    std::get<IcalComponent>(calendar.nodes[1].content)
        .set(icalProperty("SUMMARY", {}, QByteArray(100, 'x')));
    EXPECT_FALSE(writeIcal(*file).contains('\r'));
}

TEST(IcalText, longLinesAreFoldedBetweenCharacters)
{
    const QString text = u"Ä🦷"_s.repeated(60);
    const IcalProperty property = icalProperty("SUMMARY", {}, icalOfText(text));
    for (const QByteArray &line : property.raw.split('\n')) {
        EXPECT_LE(line.size(), 76); // with the carriage return
        EXPECT_TRUE(line.isValidUtf8());
    }
    const auto file = readIcal("BEGIN:A\r\n" + property.raw + "END:A\r\n");
    EXPECT_EQ(textOfIcal(file->components("A")[0]->find("SUMMARY")->value), text);
}

TEST(IcalText, textsComeBackAsTheyWere)
{
    for (const QString &text : {u""_s, u"a,b;c\\d:\"e\""_s, u"one\ntwo\n\nfour"_s,
             u"\\n is no line"_s, u"\ttab"_s, u"end\\"_s, u"😀 日本語"_s}) {
        EXPECT_EQ(textOfIcal(icalOfText(text)), text) << text.toStdString();
    }
    EXPECT_EQ(textOfIcal(icalOfText(u"a\r\nb\rc\x0001\x001b"
                                    "d"_s)),
        u"a\nb\ncd"_s);
    EXPECT_EQ(textOfIcal("a\\Nb\\,c\\"), u"a\nb,c\\"_s);
}

} // namespace

} // namespace velarc
