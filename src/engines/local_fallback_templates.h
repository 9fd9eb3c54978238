#pragma once

// The texts of the Local Preview Engine that surround one value.

#include <QStringView>

namespace velarc::local_fallback {

// A text around one value: the input, or the phrase where there is none.
struct FixedTemplate
{
    QStringView phrase;
    QStringView prefix;
    QStringView suffix;
};

inline constexpr FixedTemplate kBrainstorm{
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

inline constexpr FixedTemplate kMealPlan{
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

inline constexpr FixedTemplate kWeeklyPlan{
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

inline constexpr FixedTemplate kJoke{
    u"AI",
    u"I asked my ",
    uR"( assistant for a break, and it replied, "Great idea, should I schedule your procrastination too?"

Alternate: Why did the smart fridge join therapy? Too many unresolved leftovers.)",
};

inline constexpr FixedTemplate kEmailReply{
    u"your message",
    uR"(Subject: Quick Follow-Up

Hi,

Thanks for the update. I reviewed )",
    uR"( and suggest we align on priorities and next steps this week.

Optional follow-up question: Would tomorrow afternoon work for a 20-minute sync?

Best,)",
};

inline constexpr FixedTemplate kMergeRequest{
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

} // namespace velarc::local_fallback
