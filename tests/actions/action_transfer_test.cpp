#include "action_samples.h"

#include "actions/action_json.h"
#include "actions/action_transfer.h"
#include "actions/catalogue.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QString refusal(const QByteArray &bytes)
{
    try {
        static_cast<void>(readActionFile(bytes));
    } catch (const ActionImportError &error) {
        return error.message();
    }
    return u"was read"_s;
}

QList<ImportChange> changesOf(const QList<ImportStep> &steps)
{
    QList<ImportChange> changes;
    for (const ImportStep &step : steps) {
        changes.append(step.change);
    }
    return changes;
}

} // namespace

TEST(ActionFiles, exportedLibraryReadsBackAsItWas)
{
    const auto library = builtInActions();
    const ActionFile file = readActionFile(writeActions(library));
    EXPECT_EQ(file.actions, library);
    EXPECT_TRUE(file.unreadable.isEmpty());
}

TEST(ActionFiles, singleActionMayStandWithoutAList)
{
    const AIAction action = actionNamed(u"Alone"_s);
    const ActionFile file = readActionFile(writeJson(encodeAction(action)));
    EXPECT_EQ(file.actions, QList<AIAction>{action});
}

TEST(ActionFiles, entryOfAWrongTypeIsNamedAndTheOthersAreRead)
{
    const ActionFile file = readActionFile(
        R"([{"name":"Good"},{"name":"Bad","isPinned":"yes"},7,{"name":5},{"name":"Too"}])");
    EXPECT_EQ(namesOf(file.actions), (QStringList{u"Good"_s, u"Too"_s}));
    const QList<UnreadableAction> expected{{2, u"Bad"_s}, {3, {}}, {4, {}}};
    EXPECT_EQ(file.unreadable, expected);
}

TEST(ActionFiles, laterEntryOfAnIdBecomesAnActionOfItsOwn)
{
    const QByteArray id = R"("id":"6F9619FF-8B86-D011-B42D-00C04FC964FF")";
    const ActionFile file =
        readActionFile("[{" + id + R"(,"name":"A"},{)" + id + R"(,"name":"B"}])");
    ASSERT_EQ(namesOf(file.actions), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_NE(file.actions.at(0).id, file.actions.at(1).id);
    EXPECT_FALSE(file.actions.at(1).id.isNull());
}

TEST(ActionFiles, refusalsAreSentencesThatSayWhy)
{
    const QString noJson = u"The file is not valid JSON, so nothing was imported."_s;
    const QString noActions = u"The file holds no actions, so nothing was imported."_s;
    EXPECT_EQ(refusal({}), u"The file is empty, so nothing was imported."_s);
    EXPECT_EQ(refusal(" \n"), u"The file is empty, so nothing was imported."_s);
    EXPECT_EQ(refusal("[{\"name\":\"A\"}"), noJson);
    EXPECT_EQ(refusal("\xff\xfe[]"), noJson);
    EXPECT_EQ(refusal(QByteArray(100'000, '[')), noJson);
    EXPECT_EQ(refusal("\"text\""), noActions);
    EXPECT_EQ(refusal("null"), noActions);
    EXPECT_EQ(refusal("[]"), noActions);
}

TEST(ActionFiles, fileBeyondTheSizeLimitIsRefusedUnread)
{
    EXPECT_EQ(refusal(QByteArray(kImportedBytesLimit + 1, ' ')),
        u"The file is too large to import: 64 MB at most can be read. Nothing was imported."_s);
}

TEST(ActionFiles, fileOfFiftyThousandActionsIsRefusedWithItsCount)
{
    QByteArray json = "[{}";
    for (int entry = 1; entry < 50'000; ++entry) {
        json += ",{}";
    }
    EXPECT_EQ(refusal(json + ']'),
        u"The file holds 50000 actions, and 10000 at most can be imported at once. Nothing was "
        u"imported."_s);
}

TEST(ActionFiles, stopEndsTheReading)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(
        static_cast<void>(readActionFile(writeActions(builtInActions()), stop.get_token())),
        CancellationError);
}

TEST(Imports, previewTellsWhatIsNewWhatIsReplacedAndWhatStays)
{
    const AIAction kept = actionNamed(u"Kept"_s);
    const AIAction old = actionNamed(u"Old name"_s);
    AIAction renamed = old;
    renamed.name = u"New name"_s;
    const AIAction fresh = actionNamed(u"Fresh"_s);
    const auto steps = importSteps({kept, old}, {fresh, renamed, kept});
    EXPECT_EQ(changesOf(steps),
        (QList{ImportChange::Adds, ImportChange::Replaces, ImportChange::KeepsAsItIs}));
    EXPECT_EQ(steps.at(1).replacedName, u"Old name"_s);
    EXPECT_EQ(importSummary(steps, 2), u"1 new, 1 replaced, 1 unchanged, 2 unreadable"_s);
    EXPECT_EQ(importSummary(steps.first(1), 0), u"1 new"_s);
}

TEST(Imports, replacedActionKeepsItsPlaceAndNewOnesStandBehind)
{
    const AIAction first = actionNamed(u"First"_s);
    const AIAction second = actionNamed(u"Second"_s);
    AIAction other = first;
    other.name = u"Other"_s;
    const auto library = withImported({first, second}, {actionNamed(u"Fresh"_s), other});
    EXPECT_EQ(namesOf(library), (QStringList{u"Other"_s, u"Second"_s, u"Fresh"_s}));
}

TEST(ExportFileNames, areTheActionsNameWithoutWhatTripsAFileSystem)
{
    EXPECT_EQ(exportFileName(u"One-Sentence Summary"), u"One-Sentence-Summary.json"_s);
    EXPECT_EQ(exportFileName(u"../../etc/passwd"), u"etc-passwd.json"_s);
    EXPECT_EQ(exportFileName(u"  \u00dcbersicht: 1/2 "), u"\u00dcbersicht-1-2.json"_s);
    EXPECT_EQ(exportFileName(u"\n/"), u"action.json"_s);
    EXPECT_EQ(exportFileName(QString(500, u'x')), QString(60, u'x') + u".json"_s);
}

} // namespace velarc
