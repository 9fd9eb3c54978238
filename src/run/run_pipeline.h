#pragma once

// The road of a run, from an input on the canvas to a shown result.
//
// Rules that hold at every moment:
// - One run is active. A newer startRun() makes the older one stale.
// - A stale or cancelled run writes nothing any more, whatever it still waits for.
// - Every run that is not stale ends in a defined EngineState.
// - executionTask and activeExecutionID are set and cleared together.
//
// Main thread only. Nothing here blocks; nothing is logged.

#include "base/async.h"
#include "base/clock.h"
#include "run/run_seams.h"

#include <QUuid>

#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

class AppState;
struct RunCore;

struct RunSeams
{
    std::shared_ptr<Clock> clock;
    std::shared_ptr<Generating> generating;
    std::shared_ptr<Delivering> delivering;
    std::shared_ptr<ClipboardReading> clipboard;
    std::shared_ptr<ActionSelecting> selection;
    std::shared_ptr<UsageRecording> usage;
    std::shared_ptr<TaskScope> scope; // every run enters it
};

class RunPipeline
{
public:
    // `state` must outlive the pipeline, or both go together; runs in flight survive neither.
    RunPipeline(AppState &state, RunSeams seams);

    // Stops a run in flight. Its frames unwind from the event loop and touch nothing.
    ~RunPipeline();

    RunPipeline(const RunPipeline &) = delete;
    RunPipeline &operator=(const RunPipeline &) = delete;

    // Runs the selected action on the canvas, or on the clipboard if the canvas is empty.
    void runSelectedAction();

    // The one door to a run. Only posts its first step: what the caller writes behind this call is
    // written before the run begins.
    void startRun(AIAction action, InputStrategy strategy);

    // Cancels a run in progress and shows the canvas again, at once.
    void cancelRun();

    // Drops a shown result, so that the canvas can take new input. A run in progress stays.
    void returnToInput();

    // Drops the run or its result, and what retry and refine would use. The canvas stays.
    void restart();

    // Runs the latest action again on its shown text and the refine box. An image cannot be
    // refined.
    void runRefine();

    // Runs the latest action again, as it stood, on the input of that run.
    void retryRun();

    // Runs `action` on `input` without the canvas: no usage, no phase, no automatic copy. While it
    // lasts it takes the place of the canvas's run. Blank input gives an empty text at once.
    [[nodiscard]] QCoro::Task<ShortcutRun> runForShortcut(
        AIAction action, QString input, std::stop_token stop);

    // The latest run that got as far as preparing its payload; restart() drops both.
    [[nodiscard]] const std::optional<AIAction> &activeAction() const;
    [[nodiscard]] const std::optional<PreparedRunInput> &lastPreparedInput() const;

    [[nodiscard]] const std::optional<QUuid> &activeExecutionID() const;
    [[nodiscard]] bool hasExecutionTask() const;

private:
    std::shared_ptr<RunCore> m_core; // shared with the frames of its runs
};

} // namespace velarc
