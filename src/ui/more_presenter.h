#pragma once

// The More sheet: its ways to other sheets, and the switch of the run experience.

#include <QObject>
#include <QtQmlIntegration>

#include <stop_token>

namespace velarc {

class AppViewModel;

// Each way closes the sheet and goes on 0.2 s later: two sheets do not stand at once. Once the
// sheet is closed it goes nowhere.
class MorePresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.more is the one")
    Q_PROPERTY(bool isNewRunExperience READ isNewRunExperience NOTIFY isNewRunExperienceChanged)

public:
    explicit MorePresenter(AppViewModel &viewModel, QObject *parent = nullptr);
    ~MorePresenter() override;

    [[nodiscard]] bool isNewRunExperience() const;

    Q_INVOKABLE void openActionLibrary();
    Q_INVOKABLE void openEngineRoom();
    Q_INVOKABLE void openUsage();
    Q_INVOKABLE void newAction();
    Q_INVOKABLE void toggleNewRunExperience(); // and saves

Q_SIGNALS:
    void isNewRunExperienceChanged();

private:
    using Way = void (*)(AppViewModel &);

    AppViewModel &m_viewModel;
    std::stop_source m_lifetime;

    void leaveFor(Way way);
};

} // namespace velarc
