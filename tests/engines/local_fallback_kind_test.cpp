// Which kind of output an action's name picks.

#include "engines/local_engine_call.h"
#include "support/environment.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

// How the output of each kind for the input "a" begins: no two are alike.
constexpr const char *kOneSentence = "a.";
constexpr const char *kBrainstorm = "## Brainstorm Ideas for a";
constexpr const char *kMealPlan = "## 3-Day Meal Plan (a)";
constexpr const char *kKeyPoints = "## Key Points\n- a";
constexpr const char *kMergeRequest = "## Merge Request Title\na";
constexpr const char *kWeeklyPlan = "## Personalized Weekly Plan";
constexpr const char *kJoke = "I asked my a assistant";
constexpr const char *kInvoice = "{\n  \"vendor_name\": \"a\"";
constexpr const char *kActionItems = "## Decisions";
constexpr const char *kEmailReply = "Subject: Quick Follow-Up";
constexpr const char *kLineTable = "{\n  \"text_1\": \"a\"";
constexpr const char *kVisualConcept = "## Concept";
constexpr const char *kDefault = "[Local Preview Response]\nAction: ";

struct NameCase
{
    const char *name;
    const char *beginning;
};

void expectKinds(std::initializer_list<NameCase> cases)
{
    for (const NameCase &named : cases) {
        const QString output = generateNamed(QString::fromUtf8(named.name), u"a");
        EXPECT_TRUE(output.startsWith(QString::fromUtf8(named.beginning)))
            << named.name << " gave " << output.left(60).toStdString();
    }
}

} // namespace

TEST(LocalEngineKind, everyKeywordPicksItsKind)
{
    expectKinds({
        {"one-sentence", kOneSentence},
        {"one sentence", kOneSentence},
        {"brainstorm", kBrainstorm},
        {"meal", kMealPlan},
        {"recipe", kMealPlan},
        {"summar", kKeyPoints},
        {"git", kMergeRequest},
        {"planning", kWeeklyPlan},
        {"advice", kWeeklyPlan},
        {"joke", kJoke},
        {"invoice", kInvoice},
        {"meeting", kActionItems},
        {"tasks", kActionItems},
        {"email", kEmailReply},
        {"translat", kLineTable},
        {"icon", kVisualConcept},
        {"artist", kVisualConcept},
        {"something else", kDefault},
        {"", kDefault},
    });
}

// Each name holds a keyword and, before it, one of the next lower rank.
TEST(LocalEngineKind, theKeywordOfHigherRankDecidesWhereverItStands)
{
    expectKinds({
        {"brainstorm one-sentence", kOneSentence},
        {"brainstorm one sentence", kOneSentence},
        {"meal brainstorm", kBrainstorm},
        {"summary of a meal", kMealPlan},
        {"summary of a recipe", kMealPlan},
        {"git summary", kKeyPoints},
        {"planning with git", kMergeRequest},
        {"advice with git", kMergeRequest},
        {"joke planning", kWeeklyPlan},
        {"joke advice", kWeeklyPlan},
        {"invoice joke", kJoke},
        {"meeting invoice", kInvoice},
        {"tasks of an invoice", kInvoice},
        {"email meeting", kActionItems},
        {"email tasks", kActionItems},
        {"translate email", kEmailReply},
        {"icon translation", kLineTable},
        {"artist translation", kLineTable},
    });
}

TEST(LocalEngineKind, keywordOrderDecides)
{
    expectKinds({
        {"Meal Planning & Recipe", kMealPlan},
        {"Meeting Notes to Tasks", kActionItems},
        {"Invoice Follow-Up Message", kInvoice},
        {"Summarize Git Diff", kKeyPoints},
    });
}

TEST(LocalEngineKind, substringsCount)
{
    expectKinds({{"Digital Postcard", kMergeRequest}, {"Silicon Notes", kVisualConcept}});
}

TEST(LocalEngineKind, draftAndComposeEmailBothGiveTheEmailReply)
{
    expectKinds({{"Draft Email Reply", kEmailReply}, {"Compose Email (Mail App)", kEmailReply}});
}

TEST(LocalEngineKind, namesWithoutAKeywordReachTheDefault)
{
    expectKinds({
        {"Client Follow-Up Draft", kDefault},
        {"Smart Grocery List", kDefault},
        {"Weekend Plan Builder", kDefault},
        {"Focus Sprint Planner", kDefault},
    });
}

TEST(LocalEngineKind, almostAKeywordIsNone)
{
    expectKinds({
        {"one  sentence", kDefault},
        {"one_sentence", kDefault},
        {"brain storm", kDefault},
        {"g it", kDefault},
        {"task", kDefault},
        {"e-mail", kDefault},
        {"plan", kDefault},
    });
}

TEST(LocalEngineKind, theCaseOfTheNameDoesNotMatter)
{
    expectKinds({{"SEND EMAIL", kEmailReply}, {"GIT", kMergeRequest}, {"iNVOICE", kInvoice}});
}

TEST(LocalEngineKind, theUsersLanguageDoesNotChangeHowANameIsFolded)
{
    const ScopedVariable turkish("LC_ALL", "tr_TR.UTF-8");
    expectKinds({{"INVOICE", kInvoice}, {"ARTIST", kVisualConcept}, {"GIT", kMergeRequest}});
}

TEST(LocalEngineKind, onlyTheNameOfTheActionIsRead)
{
    AIAction action;
    action.name = u"Plain"_qs;
    action.systemPrompt = u"Tell a joke about an invoice"_qs;
    action.skills = {u"git"_qs, u"email"_qs};
    action.outputFormat = OutputFormat::Json;
    EXPECT_EQ(LocalFallbackEngine::generate(action, u"recipe"),
        u"[Local Preview Response]\nAction: Plain\n\nrecipe"_qs);
}

} // namespace velarc
