#include "ui/shell_presenter.h"

#include "run/app_view_model.h"

namespace velarc {

ShellPresenter::ShellPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    using State = AppState;
    using Self = ShellPresenter;
    const auto pass = [this, &viewModel](
                          auto from, auto to) { connect(&viewModel, from, this, to); };
    pass(&State::isMoreSheetPresentedChanged, &Self::isMoreSheetPresentedChanged);
    pass(&State::isStudioPresentedChanged, &Self::isStudioPresentedChanged);
    pass(&State::isInputModalPresentedChanged, &Self::isInputModalPresentedChanged);
    pass(&State::isActionLibraryPresentedChanged, &Self::isActionLibraryPresentedChanged);
    pass(&State::isEngineRoomPresentedChanged, &Self::isEngineRoomPresentedChanged);
    pass(&State::isUsagePresentedChanged, &Self::isUsagePresentedChanged);
    pass(&State::providerConnectSheetProviderChanged, &Self::isProviderConnectPresentedChanged);
    for (const auto changed : {&Self::isMoreSheetPresentedChanged, &Self::isStudioPresentedChanged,
             &Self::isInputModalPresentedChanged, &Self::isActionLibraryPresentedChanged,
             &Self::isEngineRoomPresentedChanged, &Self::isUsagePresentedChanged,
             &Self::isProviderConnectPresentedChanged}) {
        connect(this, changed, this, &Self::hasSheetChanged);
    }
}

bool ShellPresenter::isMoreSheetPresented() const
{
    return m_viewModel.isMoreSheetPresented();
}

void ShellPresenter::setIsMoreSheetPresented(bool isPresented)
{
    m_viewModel.setIsMoreSheetPresented(isPresented);
}

bool ShellPresenter::isStudioPresented() const
{
    return m_viewModel.isStudioPresented();
}

void ShellPresenter::setIsStudioPresented(bool isPresented)
{
    m_viewModel.setIsStudioPresented(isPresented);
}

bool ShellPresenter::isInputModalPresented() const
{
    return m_viewModel.isInputModalPresented();
}

void ShellPresenter::setIsInputModalPresented(bool isPresented)
{
    m_viewModel.setIsInputModalPresented(isPresented);
}

bool ShellPresenter::isActionLibraryPresented() const
{
    return m_viewModel.isActionLibraryPresented();
}

void ShellPresenter::setIsActionLibraryPresented(bool isPresented)
{
    m_viewModel.setIsActionLibraryPresented(isPresented);
}

bool ShellPresenter::isEngineRoomPresented() const
{
    return m_viewModel.isEngineRoomPresented();
}

void ShellPresenter::setIsEngineRoomPresented(bool isPresented)
{
    m_viewModel.setIsEngineRoomPresented(isPresented);
}

bool ShellPresenter::isUsagePresented() const
{
    return m_viewModel.isUsagePresented();
}

void ShellPresenter::setIsUsagePresented(bool isPresented)
{
    m_viewModel.setIsUsagePresented(isPresented);
}

bool ShellPresenter::isProviderConnectPresented() const
{
    return m_viewModel.providerConnectSheetProvider().has_value();
}

void ShellPresenter::setIsProviderConnectPresented(bool isPresented)
{
    if (!isPresented) {
        m_viewModel.setProviderConnectSheetProvider(std::nullopt);
    }
}

bool ShellPresenter::hasSheet() const
{
    return isMoreSheetPresented() || isStudioPresented() || isInputModalPresented()
        || isActionLibraryPresented() || isEngineRoomPresented() || isUsagePresented()
        || isProviderConnectPresented();
}

void ShellPresenter::setIsSettingsPresented(bool isPresented)
{
    if (isPresented != m_isSettingsPresented) {
        m_isSettingsPresented = isPresented;
        Q_EMIT isSettingsPresentedChanged();
    }
}

void ShellPresenter::newAction()
{
    m_viewModel.library().newAction();
}

void ShellPresenter::openActionLibrary()
{
    m_viewModel.library().openActionLibrary();
}

void ShellPresenter::openMoreSheet()
{
    m_viewModel.library().openMoreSheet();
}

} // namespace velarc
