#pragma once

// The Local Preview Engine: results from keywords and templates, without network, key or model.

#include "actions/action.h"

#include <QString>
#include <QStringView>

namespace velarc {

class LocalFallbackEngine
{
public:
    // What the engine makes of `input`, a finished prompt. The action's name alone picks one of
    // thirteen kinds of output, by the keywords in it; the input only fills that kind's template.
    //
    // Any thread; a pure function that cannot fail. Takes time in proportion to the input, or to as
    // much of its beginning as the output shows. The search for an invoice's fields gives up after
    // a number of steps that grows with the text; a field that was not found by then is null.
    [[nodiscard]] static QString generate(const AIAction &action, QStringView input);
};

} // namespace velarc
