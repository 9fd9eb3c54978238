#include "ui/home_presenter.h"

#include "actions/action_list.h"
#include "base/uuid.h"
#include "run/app_view_model.h"
#include "ui/action_look.h"

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kStripLength = 4;

// By the alternatives of EngineState.
constexpr std::array kStateWords{u"Ready", u"Running", u"Result", u"Issue"};
constexpr std::array kStatuses{
    HomePresenter::Ready, HomePresenter::Running, HomePresenter::Result, HomePresenter::Issue};
static_assert(std::is_same_v<EngineState,
    std::variant<EngineReady, EngineProcessing, EngineResult, EngineError>>);

} // namespace

QList<AIAction> stripActions(const QList<AIAction> &actions)
{
    QList<AIAction> offered = pinnedActions(actions);
    if (offered.isEmpty()) {
        offered = sortedForDisplay(visibleActions(actions));
    }
    return offered.first(std::min(offered.size(), kStripLength));
}

QString pillText(const EngineState &state, const QString &providerLabel)
{
    const QString word = QString::fromUtf16(kStateWords.at(state.index()));
    return providerLabel == u"None"_s ? word : word + u" \u2022 "_s + providerLabel;
}

HomePresenter::HomePresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    watch();
    refreshAction();
    refreshStrip();
}

void HomePresenter::watch()
{
    using State = AppState;
    using Self = HomePresenter;
    const auto pass = [this](auto from, auto to) { connect(&m_viewModel, from, this, to); };
    pass(&State::homePhaseChanged, &Self::phaseChanged);
    pass(&State::engineStateChanged, &Self::engineStateChanged);
    pass(&State::engineStateChanged, &Self::pillTextChanged);
    pass(&State::activeProviderLabelChanged, &Self::pillTextChanged);
    pass(&State::statusNoteChanged, &Self::statusNoteChanged);
    pass(&State::clipboardToastChanged, &Self::toastChanged);
    pass(&State::newRunExperienceEnabledChanged, &Self::isNewRunExperienceChanged);
    pass(&State::suggestedConnectionProviderChanged, &Self::suggestedEngineChanged);
    pass(&State::actionsChanged, &Self::refreshAction);
    pass(&State::actionsChanged, &Self::refreshStrip);
    pass(&State::selectedActionIDChanged, &Self::refreshAction);
    pass(&State::selectedActionIDChanged, &Self::refreshStrip);
    // The summary names the engine that would run.
    pass(&State::providerSettingsChanged, &Self::actionChanged);
    pass(&State::providerConnectionsChanged, &Self::actionChanged);
    pass(&State::appleIntelligenceStatusChanged, &Self::actionChanged);
}

void HomePresenter::refreshAction()
{
    m_action = m_viewModel.library().selectedAction();
    Q_EMIT actionChanged();
}

void HomePresenter::refreshStrip()
{
    const auto &selectedID = m_viewModel.selectedActionID();
    QList<ActionChip> chips;
    for (const AIAction &action : stripActions(m_viewModel.actions())) {
        chips.append({uuidText(action.id), action.name, action.icon, displayColor(action.colorHex),
            action.id == selectedID});
    }
    m_strip.setRows(std::move(chips));
}

HomePresenter::Phase HomePresenter::phase() const
{
    switch (m_viewModel.homePhase()) {
    case HomePhase::Input:
        return Input;
    case HomePhase::Processing:
        return Processing;
    case HomePhase::Output:
        return Output;
    }
    Q_UNREACHABLE();
}

HomePresenter::Status HomePresenter::status() const
{
    return kStatuses.at(m_viewModel.engineState().index());
}

QString HomePresenter::pillText() const
{
    return velarc::pillText(m_viewModel.engineState(), m_viewModel.activeProviderLabel());
}

QString HomePresenter::step() const
{
    const auto *processing = std::get_if<EngineProcessing>(&m_viewModel.engineState());
    return processing == nullptr ? u"Generating response"_s : processing->step;
}

QString HomePresenter::statusNote() const
{
    return m_viewModel.statusNote().value_or(QString());
}

QString HomePresenter::toast() const
{
    const auto &toast = m_viewModel.clipboardToast();
    return toast ? toast->message : QString();
}

bool HomePresenter::isNewRunExperience() const
{
    return m_viewModel.newRunExperienceEnabled();
}

QString HomePresenter::actionName() const
{
    return m_action ? m_action->name : QString();
}

QString HomePresenter::actionSymbol() const
{
    return m_action ? m_action->icon : QString();
}

QString HomePresenter::actionColorHex() const
{
    return displayColor(m_action ? m_action->colorHex : QString());
}

QString HomePresenter::actionSummary() const
{
    return m_action ? m_viewModel.routingSummary(*m_action) : QString();
}

QString HomePresenter::suggestedEngine() const
{
    const auto &provider = m_viewModel.suggestedConnectionProvider();
    return provider ? label(*provider) : QString();
}

void HomePresenter::run()
{
    m_viewModel.runSelectedAction();
}

void HomePresenter::cancel()
{
    m_viewModel.cancelRun();
}

void HomePresenter::back()
{
    m_viewModel.returnToInput();
}

void HomePresenter::selectAction(const QString &actionID)
{
    m_viewModel.library().selectAction(QUuid::fromString(actionID));
}

void HomePresenter::openActionLibrary()
{
    m_viewModel.library().openActionLibrary();
}

void HomePresenter::openEngineRoom()
{
    m_viewModel.setIsEngineRoomPresented(true);
}

void HomePresenter::openMoreSheet()
{
    m_viewModel.library().openMoreSheet();
}

void HomePresenter::connectSuggestedEngine()
{
    if (const auto &provider = m_viewModel.suggestedConnectionProvider()) {
        m_viewModel.connections().presentConnectSheet(*provider);
    }
}

} // namespace velarc
