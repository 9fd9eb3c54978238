#include "run/run_failure.h"

#include "base/text.h"
#include "records/run_errors.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

void handleCancellation(ActiveRun &run)
{
    if (!run.isActive()) {
        return;
    }
    run.finish();
    AppState &state = run.state();
    state.setActiveProviderLabel(u"None"_s);
    state.setEngineState(EngineReady{});
    state.setHomePhase(HomePhase::Input);
    if (isBlank(state.statusNote().value_or(QString()))) {
        state.setStatusNote(u"Canceled."_s);
    }
}

void showMissingConnection(AppState &state, AIProvider provider)
{
    state.setSuggestedConnectionProvider(provider);
    state.setEngineState(
        EngineError{label(provider) + u" is not connected."_s, u"Add your API key to continue."_s});
    state.setStatusNote(u"Connect "_s + label(provider) + u" to run this action."_s);
}

void showFailedRequest(ActiveRun &run, const AIAction &action, const QString &description)
{
    AppState &state = run.state();
    const AIProvider provider = run.seams().generating->resolvedProvider(action);
    if (action.outputFormat == OutputFormat::Image && provider == AIProvider::AppleIntelligence
        && !state.providerConnections().openAI.isConnected) {
        state.setSuggestedConnectionProvider(AIProvider::OpenAI);
    }
    state.setEngineState(
        EngineError{u"Request failed for provider "_s + label(provider) + u'.', description});
}

void showFailure(ActiveRun &run, const AIAction &action, const std::exception_ptr &error)
{
    const auto kind = action.destination.asSystem();
    try {
        std::rethrow_exception(error);
    } catch (const ProviderConnectionRequiredError &missing) {
        showMissingConnection(run.state(), missing.provider());
    } catch (const SystemActionError &failure) {
        if (!kind) {
            showFailedRequest(run, action, failure.message());
            return;
        }
        run.state().setEngineState(
            EngineError{u"Destination failed: "_s + label(*kind) + u'.', failure.message()});
    } catch (const std::exception &failure) {
        showFailedRequest(run, action, errorDescription(failure));
    }
}

bool isCancellation(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const CancellationError &) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

void handleRunError(ActiveRun &run, const AIAction &action, const std::exception_ptr &error)
{
    if (isCancellation(error)) {
        handleCancellation(run);
        return;
    }
    if (!run.isActive()) {
        return;
    }
    showFailure(run, action, error);
    run.state().setHomePhase(HomePhase::Output);
    run.finish();
}

} // namespace velarc
