#include "engines/local_fallback_texts.h"

namespace velarc::local_fallback {

constinit const FixedTemplate kBrainstorm{
    u"the current goal",
    u"## Brainstorm Ideas for ",
    uR"(
- Quick win: create a minimal first version and test with one real user.
- Time saver: automate repetitive steps with templates.
- Team boost: share a one-page brief before execution.
- Growth move: turn one output into three distribution formats.
- Cost control: run a low-risk pilot before full rollout.
- Quality move: define one success metric before starting.
- Wildcard: pair this idea with a niche audience and premium positioning.)",
};

constinit const FixedTemplate kMealPlan{
    u"balanced and quick meals",
    u"## 3-Day Meal Plan (",
    uR"()
### Day 1
- Breakfast: Greek yogurt, berries, granola
- Lunch: Chicken quinoa bowl
- Dinner: Salmon, rice, roasted broccoli
- Snack: Apple + peanut butter

### Day 2
- Breakfast: Oatmeal with banana and nuts
- Lunch: Turkey wrap + side salad
- Dinner: Stir-fry tofu with vegetables
- Snack: Cottage cheese + pineapple

### Day 3
- Breakfast: Eggs + whole grain toast
- Lunch: Lentil soup + sourdough
- Dinner: Shrimp pasta + spinach
- Snack: Mixed nuts

## Quick Recipe: 15-Minute Veggie Stir-Fry
Ingredients: mixed vegetables, tofu/chicken, soy sauce, garlic, sesame oil.
Steps: saute protein, add vegetables, season, cook 6-8 min, serve over rice.)",
};

constinit const FixedTemplate kWeeklyPlan{
    u"your current goal",
    uR"(## Personalized Weekly Plan
### Top Priorities
- Define one measurable target for )",
    uR"(
- Break work into 3 milestones
- Reserve time for review and iteration

### Suggested Schedule Blocks
- Monday: strategy and planning (60 min)
- Tue-Thu: execution sprints (2 x 45 min per day)
- Friday: review results and adjust next week

### Accountability Tip
Share your top 3 tasks each morning with a partner or notes app.)",
};

constinit const FixedTemplate kJoke{
    u"AI",
    u"I asked my ",
    uR"( assistant for a break, and it replied, "Great idea, should I schedule your procrastination too?"

Alternate: Why did the smart fridge join therapy? Too many unresolved leftovers.)",
};

constinit const FixedTemplate kEmailReply{
    u"your message",
    uR"(Subject: Quick Follow-Up

Hi,

Thanks for the update. I reviewed )",
    uR"( and suggest we align on priorities and next steps this week.

Optional follow-up question: Would tomorrow afternoon work for a 20-minute sync?

Best,)",
};

constinit const ConceptTemplate kVisualConcept{
    u"a modern product concept",
    uR"(## Concept
Create an expressive, distinctive visual around: )",
    uR"(

## Style Notes
- Strong silhouette and clear focal point
- High contrast palette with one accent color
- Minimal visual noise, high recognizability at small sizes

## Final Prompt
"Design a premium-quality visual for )",
    uR"(, with dramatic lighting, clean geometry, tactile texture, and a polished finish.")",
};

constinit const ListTemplate kKeyPoints{
    u"- No text detected to summarize.",
    u"## Key Points\n",
    uR"(

## Risks / Caveats
- Local fallback is active, so output is heuristic.

## Recommended Next Actions
- Connect OpenAI, Gemini, or Anthropic in Engine Room for model-based responses.)",
};

constinit const ListTemplate kActionItems{
    u"- [ ] Add actionable next steps",
    uR"(## Decisions
- Team aligned on next deliverables.

## Action Items
)",
    uR"(

## Owners & Deadlines
- Assign one owner and due date to each item.)",
};

constinit const FixedTemplate kMergeRequest{
    u"Update codebase",
    u"## Merge Request Title\n",
    uR"(

## Description
### Context
This change updates the code based on the provided diff/snippet.

### What Changed
- Parsed the provided changes.
- Drafted a clear MR title and body.

### Testing
- [ ] Add/update tests relevant to this change.
- [ ] Validate behavior in local environment.)",
};

constinit const QStringView kNothingToSummarize = u"No content provided to summarize";
constinit const QStringView kEmptyLineTable = u"{\n  \"empty_input\": \"\"\n}";
constinit const QStringView kPreviewHeader = u"[Local Preview Response]\nAction: ";
constinit const QStringView kNoInput = u"No input provided.";

} // namespace velarc::local_fallback
