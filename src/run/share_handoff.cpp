#include "run/share_handoff.h"

#include "actions/action_list.h"
#include "base/locale_text.h"
#include "base/text.h"
#include "run/app_state.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

std::optional<AIAction> visibleActionOf(
    const ShareHandoffParts &parts, const std::optional<QUuid> &id)
{
    const QList<AIAction> visible = parts.library.visibleActions();
    const auto found = std::find_if(visible.begin(), visible.end(),
        [&](const AIAction &action) { return id && action.id == *id; });
    return found == visible.end() ? std::nullopt : std::optional(*found);
}

void takeUpHandoff(const ShareHandoffRequest &request, const ShareHandoffParts &parts)
{
    // First of all, so that a handoff is taken up once, whatever comes of it.
    parts.store.clearPendingHandoff();
    const QString text = trimmed(request.inputText).toString();
    if (text.isEmpty()) {
        parts.state.setStatusNote(u"Share handoff had no input."_s);
        return;
    }
    parts.state.setQuickInput(text);
    parts.state.setHomePhase(HomePhase::Input);
    const PreparedRunInput input{text, {}};
    if (const auto named = visibleActionOf(parts, request.actionID)) {
        parts.library.selectAction(named->id);
        parts.pipeline.startRun(*named, ExplicitInput{input});
        parts.state.setStatusNote(u"Continued action in host app."_s);
    } else if (const auto selected = parts.library.selectedAction()) {
        parts.pipeline.startRun(*selected, ExplicitInput{input});
        parts.state.setStatusNote(u"Ran selected action in host app."_s);
    } else {
        parts.state.setStatusNote(u"Select an action to continue this share handoff."_s);
    }
}

void showSharedResult(const ShareResult &result, AppState &state)
{
    if (isBlank(result.output)) {
        return;
    }
    const QString source = u"Share Extension"_s;
    state.setQuickInput(result.output);
    state.setEngineState(EngineResult{TextPayload{result.output}, source});
    state.setLatestRunDebugInfo(GenerationDebugInfo{u"Shared from extension."_s, result.output,
        {{u"Provider"_s, source}, {u"Action"_s, result.actionName},
            {u"Timestamp"_s, iso8601(result.createdAt)}}});
    state.setHomePhase(HomePhase::Output);
    state.setStatusNote(u"Loaded result from Share Sheet."_s);
}

} // namespace

void handleOpenURL(const QUrl &url, const ShareHandoffParts &parts)
{
    if (foldedToLower(url.scheme()) != u"velarc"_s) {
        return;
    }
    const QString host = foldedToLower(url.host());
    if (host == u"share-handoff"_s) {
        if (const auto request = parts.store.loadPendingHandoff()) {
            takeUpHandoff(*request, parts);
        }
    } else if (host == u"share-result"_s) {
        if (const auto result = parts.store.loadLatestResult()) {
            showSharedResult(*result, parts.state);
        }
    }
}

} // namespace velarc
