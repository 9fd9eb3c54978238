#pragma once

// What happens on the home canvas: pasting, typing, dropping, clearing, and when that starts a run.
//
// Main thread only. What has to wait, for the clipboard or for files, is a task of its own that the
// program's scope ends; it is not the run.

#include "base/async.h"
#include "intake/file_intake.h"
#include "run/run_seams.h"

#include <QPointer>

namespace velarc {

class AppState;
class RunPipeline;

// The clipboard's text as it was last seen: asking for it costs nothing and waits for nobody.
class ClipboardTextSeen
{
public:
    virtual ~ClipboardTextSeen() = default;
    [[nodiscard]] virtual QString cachedText() const = 0;
};

struct CanvasServices
{
    std::shared_ptr<ClipboardReading> clipboard;
    std::shared_ptr<ClipboardTextSeen> clipboardText;
    std::shared_ptr<FileIntake> files;
    std::shared_ptr<ActionSelecting> selection;
    std::shared_ptr<TaskScope> scope;
};

class CanvasEvents
{
public:
    // Both must outlive it, or go with it. From here on a change of quickInput is looked at once a
    // turn of the event loop, with the text before and after that turn: a text that names nothing
    // but files is taken as a drop of them, any other goes to handleQuickInputChange().
    CanvasEvents(AppState &state, RunPipeline &pipeline, CanvasServices services);
    ~CanvasEvents();
    CanvasEvents(const CanvasEvents &) = delete;
    CanvasEvents &operator=(const CanvasEvents &) = delete;

    // Moves the clipboard to the canvas, and runs on it if the user wants that.
    void pasteFromClipboard();

    // Tells a paste from typing, and runs on it if the user wants that. One paste runs once.
    void handleQuickInputChange(const QString &oldText, const QString &newText);

    // Moves files to the canvas and always runs on them.
    void handleDroppedFiles(QList<QUrl> urls);

    void clearQuickInput();
    void removeAttachment(const QUuid &id);

    // Keeps an action that waits for its input. It opens no sheet: no action asks for one yet.
    void holdForInput(AIAction action);

    // The sheet that asks for input: runs the waiting action on it, or drops that action.
    void submitInputModal();
    void dismissInputModal();

    struct Members;

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks
};

} // namespace velarc
