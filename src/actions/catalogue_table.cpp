#include "actions/catalogue_table.h"

namespace velarc {

namespace {

using Kind = SystemDestinationKind;

constexpr std::array kCatalogue{
    BuiltInAction{.name = u"One-Sentence Summary",
        .icon = u"text.quote",
        .colorHex = u"0EA5E9",
        .provider = AIProvider::AppleIntelligence,
        .format = OutputFormat::Text,
        .skills = {u"brief-summary"},
        .isPinned = true,
        .sortOrder = 10,
        .prompt = uR"(Summarize the user input in exactly one sentence.
Keep it factual, clear, and under 25 words.
Return only that sentence.

Source:
{User_Input})"},
    BuiltInAction{.name = u"Brainstorming Ideas",
        .icon = u"lightbulb.max.fill",
        .colorHex = u"F59E0B",
        .format = OutputFormat::Markdown,
        .skills = {u"idea-generation"},
        .isPinned = true,
        .sortOrder = 20,
        .prompt = uR"(Generate 12 practical ideas from the user input.
Organize by impact and speed of execution.
Include one surprising wildcard idea.

Topic:
{User_Input})"},
    BuiltInAction{.name = u"Meal Planning & Recipe",
        .icon = u"fork.knife.circle.fill",
        .colorHex = u"16A34A",
        .format = OutputFormat::Markdown,
        .skills = {u"nutrition-planning", u"recipe-builder"},
        .sortOrder = 30,
        .prompt = uR"(Build a 3-day meal plan from the user goals and preferences.
For each day include breakfast, lunch, dinner, and one snack.
Add one quick recipe with ingredients and steps.

User preferences:
{User_Input})"},
    BuiltInAction{.name = u"Git Ideas",
        .icon = u"arrow.triangle.merge",
        .colorHex = u"DC2626",
        .provider = AIProvider::AppleIntelligence,
        .format = OutputFormat::Markdown,
        .skills = {u"repo-context", u"diff-parser"},
        .sortOrder = 40,
        .prompt = uR"(You are an expert software collaborator.
Generate:
1) a concise commit title
2) a short branch name
3) a merge request summary with risks and tests

Input:
{User_Input})"},
    BuiltInAction{.name = u"Personalized Planning & Advice",
        .icon = u"calendar.badge.clock",
        .colorHex = u"7C3AED",
        .format = OutputFormat::Markdown,
        .skills = {u"planning", u"time-blocking"},
        .sortOrder = 50,
        .prompt = uR"(Create a personalized weekly plan based on the user situation.
Return:
- top priorities
- suggested schedule blocks
- one accountability tip

Input:
{User_Input})"},
    BuiltInAction{.name = u"Tell Me a Joke",
        .icon = u"face.smiling",
        .colorHex = u"DB2777",
        .provider = AIProvider::AppleIntelligence,
        .format = OutputFormat::Text,
        .skills = {u"humor"},
        .isPinned = true,
        .sortOrder = 60,
        .prompt = uR"(Tell one original, clean, genuinely funny joke based on the user topic.
Then add a one-line alternate joke.

Topic:
{User_Input})"},
    BuiltInAction{.name = u"Extract Invoice Info",
        .icon = u"doc.text.magnifyingglass",
        .colorHex = u"0F766E",
        .format = OutputFormat::Json,
        .skills = {u"invoice-parser"},
        .isPinned = true,
        .sortOrder = 70,
        .prompt = uR"(Extract invoice details from the input and return valid JSON only.
Required keys:
- vendor_name
- invoice_number
- invoice_date
- due_date
- currency
- total_amount
- tax_amount
- line_items (array of {description, quantity, unit_price, total})
If a field is missing, return null.

Invoice text:
{User_Input})"},
    BuiltInAction{.name = u"Draft Email Reply",
        .icon = u"envelope.badge.fill",
        .colorHex = u"2563EB",
        .format = OutputFormat::Markdown,
        .skills = {u"email-drafting"},
        .sortOrder = 80,
        .prompt = uR"(Draft a reply email that is concise and polite.
Include:
- subject line
- body
- one optional follow-up question

Original message:
{User_Input})"},
    BuiltInAction{.name = u"Meeting Notes to Tasks",
        .icon = u"checklist.checked",
        .colorHex = u"4F46E5",
        .format = OutputFormat::Markdown,
        .skills = {u"task-extraction"},
        .sortOrder = 90,
        .prompt = uR"(Convert the notes into:
- decisions made
- action items
- owners
- deadlines

Notes:
{User_Input})"},
    BuiltInAction{.name = u"Create Calendar Event",
        .icon = u"calendar.badge.plus",
        .colorHex = u"0F766E",
        .format = OutputFormat::Text,
        .destination = Kind::CalendarCreateEvent,
        .skills = {u"calendar"},
        .sortOrder = 100,
        .prompt = uR"(Create a calendar event from input text.
Suggested format:
Title: Team Sync
Start: 2026-02-20 10:00
End: 2026-02-20 10:30
Location: Zoom
Notes: Agenda details)"},
    BuiltInAction{.name = u"Compose Email (Mail App)",
        .icon = u"envelope.fill",
        .colorHex = u"1D4ED8",
        .format = OutputFormat::Text,
        .destination = Kind::MailCompose,
        .skills = {u"mail"},
        .sortOrder = 110,
        .prompt = uR"(Compose an email draft.
Suggested format:
To: recipient
Subject: Subject line
Body: Message body)"},
    BuiltInAction{.name = u"Compose Message",
        .icon = u"message.fill",
        .colorHex = u"059669",
        .format = OutputFormat::Text,
        .destination = Kind::MessagesCompose,
        .skills = {u"messages"},
        .sortOrder = 120,
        .prompt = uR"(Compose a text message draft.
Suggested format:
To: +15555550123
Body: Message text)"},
    BuiltInAction{.name = u"Daily Journal Reflection",
        .icon = u"book.closed.fill",
        .colorHex = u"7C3AED",
        .format = OutputFormat::Markdown,
        .skills = {u"journal", u"reflection"},
        .sortOrder = 130,
        .prompt = uR"(You are a reflective coach.
Using today's date {Current_Date}, analyze the journal input.

Return markdown with exactly these sections:
## Summary of Day
## Wins
## Stressors
## Lessons
## One Next Step for Tomorrow

Keep each section concise (2-4 bullets). No extra sections.

Journal:
{User_Input})"},
    BuiltInAction{.name = u"Smart Grocery List",
        .icon = u"cart.fill",
        .colorHex = u"16A34A",
        .format = OutputFormat::Markdown,
        .skills = {u"grocery", u"meal-planning"},
        .sortOrder = 140,
        .prompt = uR"(Create a practical grocery list from the input.
Group items under: Produce, Protein, Dairy, Pantry, Frozen, Other.
If quantity is implied, include it.
Remove duplicates and normalize item names.

Return markdown only with grouped bullet lists.

Input:
{User_Input})"},
    BuiltInAction{.name = u"Weekend Plan Builder",
        .icon = u"sun.max.fill",
        .colorHex = u"F59E0B",
        .format = OutputFormat::Markdown,
        .skills = {u"planning", u"time-blocking"},
        .sortOrder = 150,
        .prompt = uR"(Build a realistic weekend plan from the user's goals and constraints.

Return markdown with exactly:
## Saturday
## Sunday
## Non-Negotiables
## Backup Plan (if time slips)

Use time blocks and keep energy balance (work, life, rest).

Input:
{User_Input})"},
    BuiltInAction{.name = u"Client Follow-Up Draft",
        .icon = u"person.crop.circle.badge.checkmark",
        .colorHex = u"2563EB",
        .format = OutputFormat::Markdown,
        .skills = {u"email-drafting", u"client-communication"},
        .sortOrder = 160,
        .prompt = uR"(Draft a concise client follow-up email.

Return markdown with:
- Subject:
- Email Body:
- Optional CTA:

Tone: professional, warm, direct.
Do not invent commitments not present in the input.

Context:
{User_Input})"},
    BuiltInAction{.name = u"Proposal Scope Extractor",
        .icon = u"doc.text.fill",
        .colorHex = u"0F766E",
        .format = OutputFormat::Json,
        .skills = {u"scope-extraction", u"proposal"},
        .sortOrder = 170,
        .prompt = uR"(Extract project scope details and return valid JSON only.
Schema:
{
  "project_name": string|null,
  "objectives": string[],
  "deliverables": string[],
  "timeline": string|null,
  "assumptions": string[],
  "risks": string[],
  "open_questions": string[]
}
Use null/[] when missing. No markdown, no comments.

Input:
{User_Input})"},
    BuiltInAction{.name = u"Invoice Follow-Up Message",
        .icon = u"dollarsign.circle.fill",
        .colorHex = u"EA580C",
        .format = OutputFormat::Markdown,
        .skills = {u"billing", u"collections"},
        .sortOrder = 180,
        .prompt = uR"(Write a polite invoice follow-up message.

Return markdown with:
- Subject:
- Message:
- Alternate firmer version:

Include invoice number/date/amount placeholders only if missing.
Keep it concise and professional.

Input:
{User_Input})"},
    BuiltInAction{.name = u"Priority Matrix",
        .icon = u"square.grid.2x2.fill",
        .colorHex = u"DC2626",
        .format = OutputFormat::Markdown,
        .skills = {u"prioritization", u"decision-support"},
        .sortOrder = 190,
        .prompt = uR"(Sort tasks into an Eisenhower matrix.

Return markdown with exactly:
## Urgent + Important
## Important + Not Urgent
## Urgent + Not Important
## Neither
## First 3 Actions Today

Use only tasks from input; do not duplicate items.

Tasks:
{User_Input})"},
    BuiltInAction{.name = u"Inbox Triage Assistant",
        .icon = u"tray.full.fill",
        .colorHex = u"0369A1",
        .format = OutputFormat::Markdown,
        .skills = {u"inbox", u"triage"},
        .sortOrder = 200,
        .prompt = uR"(Triage incoming messages/tasks from the input.

Return markdown with:
## Reply Now
## Delegate
## Defer
## Archive
## Suggested 30-Minute Plan

Each item should include one short reason.

Input:
{User_Input})"},
    BuiltInAction{.name = u"Meeting Agenda Generator",
        .icon = u"list.bullet.rectangle.portrait.fill",
        .colorHex = u"4F46E5",
        .format = OutputFormat::Markdown,
        .skills = {u"meetings", u"facilitation"},
        .sortOrder = 210,
        .prompt = uR"(Generate a focused meeting agenda.

Return markdown with:
## Goal
## Agenda (time-boxed)
## Decisions Needed
## Pre-Reads
## Owners

Target total duration from input; if absent, default to 30 minutes.

Input:
{User_Input})"},
    BuiltInAction{.name = u"Focus Sprint Planner",
        .icon = u"timer.circle.fill",
        .colorHex = u"059669",
        .format = OutputFormat::Markdown,
        .skills = {u"focus", u"execution"},
        .sortOrder = 220,
        .prompt = uR"(Turn the input into a deep-work sprint plan.

Return markdown with:
## Sprint Goal
## 3 Sprint Tasks
## 90-Minute Breakdown
## Distraction Blockers
## Definition of Done

Keep it immediately executable.

Input:
{User_Input})"},
};

} // namespace

std::span<const BuiltInAction> catalogueTable()
{
    return kCatalogue;
}

} // namespace velarc
