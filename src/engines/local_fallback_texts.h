#pragma once

// The other wording of the Local Preview Engine: lists, the visual concept, single phrases.

#include <QStringView>

namespace velarc::local_fallback {

// The value stands behind each of the first two parts.
struct ConceptTemplate
{
    QStringView phrase;
    QStringView opening;
    QStringView notes;
    QStringView ending;
};

inline constexpr ConceptTemplate kVisualConcept{
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

// A list between two texts, and what stands there when there is nothing to list.
struct ListTemplate
{
    QStringView empty;
    QStringView prefix;
    QStringView suffix;
};

// The text for an empty list is the whole output.
inline constexpr ListTemplate kKeyPoints{
    u"- No text detected to summarize.",
    u"## Key Points\n",
    uR"(

## Risks / Caveats
- Local fallback is active, so output is heuristic.

## Recommended Next Actions
- Connect OpenAI, Gemini, or Anthropic in Engine Room for model-based responses.)",
};

// The text for an empty list takes the list's place.
inline constexpr ListTemplate kActionItems{
    u"- [ ] Add actionable next steps",
    uR"(## Decisions
- Team aligned on next deliverables.

## Action Items
)",
    uR"(

## Owners & Deadlines
- Assign one owner and due date to each item.)",
};

inline constexpr QStringView kNothingToSummarize = u"No content provided to summarize";
inline constexpr QStringView kEmptyLineTable = u"{\n  \"empty_input\": \"\"\n}";
inline constexpr QStringView kPreviewHeader = u"[Local Preview Response]\nAction: ";
inline constexpr QStringView kNoInput = u"No input provided.";

} // namespace velarc::local_fallback
