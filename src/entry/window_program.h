#pragma once

// The window with all that it stands on, and what others may ask of it.

#include "entry/main_window.h"
#include "entry/velarc_app.h"
#include "entry/window_requests.h"
#include "intake/clipboard_writing.h"

#include <optional>

namespace velarc {

// Main thread only, over a QGuiApplication that outlives it.
class WindowProgram
{
public:
    // What is asked before start() must wait for it.
    [[nodiscard]] WindowHandlers handlers();

    // Builds the state object; there is no window yet.
    void start();

    // Shows the window, or brings it to the front.
    void present(const ActivationContext &context);

private:
    void selectAction(const QUuid &id);
    void copy(const CopiedThing &thing);

    std::shared_ptr<ClipboardWriting> m_clipboard;
    std::optional<VelarcApp> m_app;
    std::unique_ptr<MainWindow> m_window; // goes before what it shows
};

} // namespace velarc
