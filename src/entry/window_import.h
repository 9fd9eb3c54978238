#pragma once

// Imports that other programs hand to the window.

#include "entry/window_requests.h"
#include "run/app_view_model.h"

#include <QPointer>

namespace velarc {

// Takes the actions of an exported file over and answers. The file is read off the main thread; its
// actions meet the library as it is then.
//
// Stop: it ends with the view model's scope, and then without an answer.
[[nodiscard]] QCoro::Task<void> importActions(
    QPointer<AppViewModel> viewModel, QByteArray json, TakeImportAnswer answer);

} // namespace velarc
