#include "entry/window_import.h"

#include "actions/action_transfer.h"
#include "base/worker.h"

namespace velarc {

QCoro::Task<void> importActions(
    QPointer<AppViewModel> viewModel, QByteArray json, TakeImportAnswer answer)
{
    const std::stop_source stop;
    const TaskScope::Ticket ticket = viewModel->scope()->enter(stop);
    SerialWorker worker;
    ActionFile file;
    std::optional<QString> refusal;
    try {
        auto work = [json](const std::stop_token &token) { return readActionFile(json, token); };
        file = co_await worker.run(std::move(work), stop.get_token());
    } catch (const ActionImportError &error) {
        refusal = error.message();
    } catch (const CancellationError &) {
        co_return;
    }
    if (!viewModel) {
        co_return;
    }
    if (refusal) {
        answer({ImportAnswer::Outcome::Refused, *refusal});
        co_return;
    }
    const QList<ImportStep> steps = importSteps(viewModel->actions(), file.actions);
    viewModel->library().importActions(changedActions(steps));
    answer({ImportAnswer::Outcome::Imported, importSummary(steps, file.unreadable.size())});
}

} // namespace velarc
