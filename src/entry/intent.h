#pragma once

// Running an action without the window: what the command line and the desktop's services share.
//
// Nothing of a running window's state is shared with it; the link is the store and the secret
// store. Main thread only.

#include "entry/offered_actions.h"
#include "run/app_view_model.h"

#include <functional>
#include <memory>

namespace velarc {

struct IntentOutcome
{
    enum class Kind
    {
        Done,
        Refused
    };

    Kind kind = Kind::Done;
    QString dialog; // what is answered
    std::optional<ShortcutRun> run; // one that was done
};

// Makes the state object of one run.
using MakeViewModel = std::function<std::unique_ptr<AppViewModel>()>;

// Runs the stored action of `actionID` on `input`, over a state of its own that lives as long as
// the run. Blank input, an unknown action and an action that needs a compose window are refused
// with a dialog that says why.
//
// Stop:   CancellationError.
// Errors: those of the engines and of delivery.
[[nodiscard]] QCoro::Task<IntentOutcome> performIntent(
    QUuid actionID, QString input, MakeViewModel makeViewModel, std::stop_token stop);

} // namespace velarc
