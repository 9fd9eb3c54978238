#include "ui/more_presenter.h"

#include "base/errors.h"
#include "run/app_view_model.h"

#include <QCoroTask>

namespace velarc {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kClosingTime = 200ms;

// The view model outlives the presenter, whose end stops the pause.
QCoro::Task<void> goLater(
    AppViewModel *viewModel, void (*way)(AppViewModel &), std::stop_source stop)
{
    const TaskScope::Ticket ticket = viewModel->scope()->enter(stop);
    const std::shared_ptr<Clock> clock = viewModel->clock();
    try {
        co_await clock->pause(kClosingTime, stop.get_token());
    } catch (const CancellationError &) {
        co_return;
    }
    if (!stop.stop_requested()) {
        way(*viewModel);
    }
}

} // namespace

MorePresenter::MorePresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    connect(&viewModel, &AppState::newRunExperienceEnabledChanged, this,
        &MorePresenter::isNewRunExperienceChanged);
}

MorePresenter::~MorePresenter()
{
    m_lifetime.request_stop();
}

bool MorePresenter::isNewRunExperience() const
{
    return m_viewModel.newRunExperienceEnabled();
}

void MorePresenter::openActionLibrary()
{
    leaveFor([](AppViewModel &viewModel) { viewModel.library().openActionLibrary(); });
}

void MorePresenter::openEngineRoom()
{
    leaveFor([](AppViewModel &viewModel) { viewModel.setIsEngineRoomPresented(true); });
}

void MorePresenter::openUsage()
{
    leaveFor([](AppViewModel &viewModel) { viewModel.setIsUsagePresented(true); });
}

void MorePresenter::newAction()
{
    leaveFor([](AppViewModel &viewModel) { viewModel.library().newAction(); });
}

void MorePresenter::toggleNewRunExperience()
{
    m_viewModel.library().setNewRunExperienceEnabled(!isNewRunExperience());
}

void MorePresenter::leaveFor(Way way)
{
    if (!m_viewModel.isMoreSheetPresented()) {
        return; // a second press while it closes
    }
    m_viewModel.setIsMoreSheetPresented(false);
    static_cast<void>(goLater(&m_viewModel, way, m_lifetime));
}

} // namespace velarc
