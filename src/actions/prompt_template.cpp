#include "actions/prompt_template.h"

#include "base/locale_text.h"

#include <vector>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// QString::replace moves the rest of the text once for each thousand finds.
QString withVariableFilled(QStringView text, QStringView variable, QStringView value)
{
    QString filled;
    filled.reserve(text.size() + value.size());
    qsizetype start = 0;
    for (qsizetype found = text.indexOf(variable); found >= 0;
         found = text.indexOf(variable, start)) {
        filled += text.mid(start, found - start);
        filled += value;
        start = found + variable.size();
    }
    filled += text.mid(start);
    return filled;
}

// For each leading part of `text`, one unit to all units long: how many units at its end are also
// its beginning, the part itself not counted.
std::vector<qsizetype> borderLengths(QStringView text)
{
    std::vector<qsizetype> lengths(static_cast<std::size_t>(text.size()), 0);
    qsizetype border = 0;
    for (qsizetype index = 1; index < text.size(); ++index) {
        while (border > 0 && text[index] != text[border]) {
            border = lengths[static_cast<std::size_t>(border - 1)];
        }
        if (text[index] == text[border]) {
            ++border;
        }
        lengths[static_cast<std::size_t>(index)] = border;
    }
    return lengths;
}

// The search by Knuth, Morris and Pratt. QString::contains compares a long needle anew at each
// place, which takes minutes where a megabyte of one letter is searched for nearly the same.
bool containsText(QStringView text, QStringView wanted)
{
    if (wanted.size() > text.size()) {
        return false;
    }
    const std::vector<qsizetype> borders = borderLengths(wanted);
    qsizetype matched = 0;
    for (const QChar unit : text) {
        while (matched > 0 && unit != wanted[matched]) {
            matched = borders[static_cast<std::size_t>(matched - 1)];
        }
        if (unit == wanted[matched]) {
            ++matched;
        }
        if (matched == wanted.size()) {
            return true;
        }
    }
    return false;
}

} // namespace

QString renderPrompt(QStringView promptTemplate, const QString &input, const PromptMoment &moment)
{
    QString prompt = withVariableFilled(promptTemplate, u"{User_Input}", input);
    prompt = withVariableFilled(prompt, u"{Current_Date}", longDateShortTime(moment.now));
    prompt = withVariableFilled(prompt, u"{Clipboard}", moment.clipboardText);
    if (input.isEmpty() || !containsText(prompt, input)) {
        prompt += u"\n\nInput:\n"_s + input;
    }
    return prompt;
}

} // namespace velarc
