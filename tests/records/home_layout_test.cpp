#include "record_cases.h"

#include "base/uuid.h"
#include "records/home_layout.h"
#include "support/printers.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

const QUuid kFirst = *uuidFromText(u"6F9619FF-8B86-D011-B42D-00CF4FC964FF");
const QUuid kSecond = *uuidFromText(u"00000000-0000-4000-8000-000000000001");

HomeLayoutState allSet()
{
    return {kFirst, {true, false, true}, EngineRoomSection::Advanced, {kSecond, kFirst}};
}

} // namespace

TEST(HomeLayout, nothingIsSelectedOrSeenAtFirst)
{
    const HomeLayoutState layout;
    EXPECT_EQ(layout.selectedActionID, std::nullopt);
    EXPECT_EQ(layout.hintState, (HomeHintState{false, false, false}));
    EXPECT_EQ(layout.lastEngineRoomSection, EngineRoomSection::Connections);
    EXPECT_TRUE(layout.recentActionIDs.isEmpty());
}

TEST(HomeLayout, writesItsKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeHomeLayout(allSet())),
        R"({"selectedActionID":"6F9619FF-8B86-D011-B42D-00CF4FC964FF",)"
        R"("hintState":{"hasSeenRunClipboardHint":true,"hasSeenMoreMenuHint":false,)"
        R"("hasSeenChangeActionHint":true},"lastEngineRoomSection":"advanced",)"
        R"("recentActionIDs":["00000000-0000-4000-8000-000000000001",)"
        R"("6F9619FF-8B86-D011-B42D-00CF4FC964FF"]})");
}

TEST(HomeLayout, selectionOfNoneLeavesItsKeyOutAndThreeKeysStand)
{
    const Json written = encodeHomeLayout({});
    EXPECT_EQ(written.size(), 3U);
    EXPECT_FALSE(written.contains("selectedActionID"));
}

TEST(HomeLayout, whatIsWrittenIsReadBack)
{
    EXPECT_EQ(decodeHomeLayout(encodeHomeLayout(allSet())), allSet());
    EXPECT_EQ(decodeHomeLayout(encodeHomeLayout({})), HomeLayoutState());
}

TEST(HomeLayout, eachMissingKeyTakesItsDefault)
{
    HomeLayoutState selected;
    selected.selectedActionID = kFirst;
    HomeLayoutState hinted;
    hinted.hintState = {false, true, false};
    HomeLayoutState opened;
    opened.lastEngineRoomSection = EngineRoomSection::DefaultEngine;
    HomeLayoutState recent;
    recent.recentActionIDs = {kFirst};
    expectRead<HomeLayoutState>(decodeHomeLayout,
        {
            {"nothing", "{}", {}},
            {"nulls",
                R"({"selectedActionID":null,"hintState":null,"lastEngineRoomSection":null,)"
                R"("recentActionIDs":null})",
                {}},
            {"selection alone, in lower case",
                R"({"selectedActionID":"6f9619ff-8b86-d011-b42d-00cf4fc964ff"})", selected},
            {"hints alone",
                R"({"hintState":{"hasSeenRunClipboardHint":false,"hasSeenMoreMenuHint":true,)"
                R"("hasSeenChangeActionHint":false,"more":1}})",
                hinted},
            {"section alone", R"({"lastEngineRoomSection":"defaultEngine"})", opened},
            {"recents alone", R"({"recentActionIDs":["6F9619FF-8B86-D011-B42D-00CF4FC964FF"]})",
                recent},
            {"unknown key", R"({"theme":"dark"})", {}},
        });
}

TEST(HomeLayout, hintsMustTellAllThree)
{
    expectRefused(decodeHomeLayout,
        {
            {"one hint", R"({"hintState":{"hasSeenMoreMenuHint":true}})"},
            {"first missing",
                R"({"hintState":{"hasSeenMoreMenuHint":true,"hasSeenChangeActionHint":true}})"},
            {"second missing",
                R"({"hintState":{"hasSeenRunClipboardHint":true,"hasSeenChangeActionHint":true}})"},
            {"third missing",
                R"({"hintState":{"hasSeenRunClipboardHint":true,"hasSeenMoreMenuHint":true}})"},
            {"one null",
                R"({"hintState":{"hasSeenRunClipboardHint":true,"hasSeenMoreMenuHint":true,)"
                R"("hasSeenChangeActionHint":null}})"},
            {"no hints", R"({"hintState":{}})"},
        });
}

TEST(HomeLayout, wrongTypeOrUnknownSpellingIsRefused)
{
    expectRefused(decodeHomeLayout,
        {
            {"no object", "[]"},
            {"number as selection", R"({"selectedActionID":1})"},
            {"text that is no UUID", R"({"selectedActionID":"first"})"},
            {"UUID in braces", R"({"selectedActionID":"{6F9619FF-8B86-D011-B42D-00CF4FC964FF}"})"},
            {"array as hints", R"({"hintState":[]})"},
            {"number as hint",
                R"({"hintState":{"hasSeenRunClipboardHint":1,"hasSeenMoreMenuHint":true,)"
                R"("hasSeenChangeActionHint":true}})"},
            {"unknown section", R"({"lastEngineRoomSection":"billing"})"},
            {"section in other case", R"({"lastEngineRoomSection":"Advanced"})"},
            {"number as section", R"({"lastEngineRoomSection":2})"},
            {"text as recents", R"({"recentActionIDs":"6F9619FF-8B86-D011-B42D-00CF4FC964FF"})"},
            {"null among recents", R"({"recentActionIDs":[null]})"},
            {"no UUID among recents", R"({"recentActionIDs":["x"]})"},
        });
}

TEST(EngineRoomSection, spellingsAreFixed)
{
    EXPECT_EQ(storedSpelling(EngineRoomSection::Connections), u"connections"_s);
    EXPECT_EQ(storedSpelling(EngineRoomSection::DefaultEngine), u"defaultEngine"_s);
    EXPECT_EQ(storedSpelling(EngineRoomSection::Advanced), u"advanced"_s);
    for (const EngineRoomSection section : allEngineRoomSections()) {
        EXPECT_EQ(fromStoredSpelling<EngineRoomSection>(storedSpelling(section)), section);
    }
    EXPECT_EQ(allEngineRoomSections().size(), 3);
    EXPECT_EQ(fromStoredSpelling<EngineRoomSection>(u"Connections"), std::nullopt);
    EXPECT_EQ(fromStoredSpelling<EngineRoomSection>(u""), std::nullopt);
}

TEST(HomeAutomationOptions, pasteRunsAndNothingIsCopiedAtFirst)
{
    EXPECT_TRUE(HomeAutomationOptions().autoRunOnPaste);
    EXPECT_FALSE(HomeAutomationOptions().autoCopyResult);
}

TEST(HomeAutomationOptions, writesBothKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeAutomationOptions({false, true})),
        R"({"autoRunOnPaste":false,"autoCopyResult":true})");
}

TEST(HomeAutomationOptions, eachMissingKeyTakesItsDefault)
{
    expectRead<HomeAutomationOptions>(decodeAutomationOptions,
        {
            {"nothing", "{}", {true, false}},
            {"nulls", R"({"autoRunOnPaste":null,"autoCopyResult":null})", {true, false}},
            {"paste alone", R"({"autoRunOnPaste":false})", {false, false}},
            {"copy alone", R"({"autoCopyResult":true})", {true, true}},
            {"both", R"({"autoCopyResult":true,"autoRunOnPaste":false})", {false, true}},
            {"unknown key", R"({"autoRunOnStart":1})", {true, false}},
        });
}

TEST(HomeAutomationOptions, keyOfTheOlderFormHasNoEffectWhateverItHolds)
{
    expectRead<HomeAutomationOptions>(decodeAutomationOptions,
        {
            {"false", R"({"autoRunOnDrop":false})", {true, false}},
            {"true", R"({"autoRunOnDrop":true,"autoRunOnPaste":false})", {false, false}},
            {"wrong type", R"({"autoRunOnDrop":"no"})", {true, false}},
        });
}

TEST(HomeAutomationOptions, wrongTypeIsRefused)
{
    expectRefused(decodeAutomationOptions,
        {
            {"no object", "true"},
            {"number", R"({"autoRunOnPaste":0})"},
            {"text", R"({"autoCopyResult":"true"})"},
        });
}

} // namespace velarc
