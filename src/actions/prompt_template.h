#pragma once

// Turns an action's prompt template and the user's input into the prompt that every engine gets.
//
// A template holds {User_Input}, {Current_Date} and {Clipboard} any number of times, spelled to the
// letter; all other braces stay as they are and nothing escapes them.

#include "base/clock.h"

#include <QString>

namespace velarc {

// What a prompt takes from the moment at which it is rendered.
struct PromptMoment
{
    Instant now; // told as a long date and a short time, in the user's locale and time zone
    QString clipboardText; // empty where the clipboard holds no text
};

// The finished prompt.
//
// The variables are filled in the order in which they stand above, each in the text that the one
// before it left: a {Clipboard} inside the input is filled too, one inside the clipboard's text is
// not. An input that cannot be found in the outcome, the empty one included, is put behind it under
// the line "Input:".
//
// Pure; any thread. Costs time in proportion to its arguments and its result, whatever they hold.
[[nodiscard]] QString renderPrompt(
    QStringView promptTemplate, const QString &input, const PromptMoment &moment);

} // namespace velarc
