#pragma once

// The wording of the Local Preview Engine.

#include <QStringView>

namespace velarc::local_fallback {

// A text around one value: the input, or the phrase where there is none.
struct FixedTemplate
{
    QStringView phrase;
    QStringView prefix;
    QStringView suffix;
};

// The value stands behind each of the first two parts.
struct ConceptTemplate
{
    QStringView phrase;
    QStringView opening;
    QStringView notes;
    QStringView ending;
};

// A list between two texts, and what stands there when there is nothing to list.
struct ListTemplate
{
    QStringView empty;
    QStringView prefix;
    QStringView suffix;
};

extern const FixedTemplate kBrainstorm;
extern const FixedTemplate kMealPlan;
extern const FixedTemplate kWeeklyPlan;
extern const FixedTemplate kJoke;
extern const FixedTemplate kEmailReply;
extern const ConceptTemplate kVisualConcept;
// The text for an empty list is the whole output.
extern const ListTemplate kKeyPoints;
// The text for an empty list takes the list's place.
extern const ListTemplate kActionItems;
extern const FixedTemplate kMergeRequest;
extern const QStringView kNothingToSummarize;
extern const QStringView kEmptyLineTable;
extern const QStringView kPreviewHeader;
extern const QStringView kNoInput;

} // namespace velarc::local_fallback
