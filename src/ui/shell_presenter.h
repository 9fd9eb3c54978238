#pragma once

// Which sheets stand over the window.

#include <QObject>
#include <QtQmlIntegration>

namespace velarc {

class AppViewModel;

// A sheet is shown exactly while its property says so: closing one writes it back to false.
class ShellPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.shell is the one")
    Q_PROPERTY(bool isMoreSheetPresented READ isMoreSheetPresented WRITE setIsMoreSheetPresented
            NOTIFY isMoreSheetPresentedChanged)
    Q_PROPERTY(bool isStudioPresented READ isStudioPresented WRITE setIsStudioPresented NOTIFY
            isStudioPresentedChanged)
    Q_PROPERTY(bool isInputModalPresented READ isInputModalPresented WRITE setIsInputModalPresented
            NOTIFY isInputModalPresentedChanged)
    Q_PROPERTY(bool isActionLibraryPresented READ isActionLibraryPresented WRITE
            setIsActionLibraryPresented NOTIFY isActionLibraryPresentedChanged)
    Q_PROPERTY(bool isEngineRoomPresented READ isEngineRoomPresented WRITE setIsEngineRoomPresented
            NOTIFY isEngineRoomPresentedChanged)
    Q_PROPERTY(bool isUsagePresented READ isUsagePresented WRITE setIsUsagePresented NOTIFY
            isUsagePresentedChanged)
    Q_PROPERTY(bool isProviderConnectPresented READ isProviderConnectPresented WRITE
            setIsProviderConnectPresented NOTIFY isProviderConnectPresentedChanged)
    Q_PROPERTY(bool hasSheet READ hasSheet NOTIFY hasSheetChanged)
    Q_PROPERTY(bool isSettingsPresented READ isSettingsPresented WRITE setIsSettingsPresented NOTIFY
            isSettingsPresentedChanged)

public:
    explicit ShellPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] bool isMoreSheetPresented() const;
    void setIsMoreSheetPresented(bool isPresented);
    [[nodiscard]] bool isStudioPresented() const;
    void setIsStudioPresented(bool isPresented);
    [[nodiscard]] bool isInputModalPresented() const;
    void setIsInputModalPresented(bool isPresented);
    [[nodiscard]] bool isActionLibraryPresented() const;
    void setIsActionLibraryPresented(bool isPresented);
    [[nodiscard]] bool isEngineRoomPresented() const;
    void setIsEngineRoomPresented(bool isPresented);
    [[nodiscard]] bool isUsagePresented() const;
    void setIsUsagePresented(bool isPresented);

    // The connect sheet stands while an engine is set; it can only be closed from here.
    [[nodiscard]] bool isProviderConnectPresented() const;
    void setIsProviderConnectPresented(bool isPresented);

    // Whether any of them stands.
    [[nodiscard]] bool hasSheet() const;

    // The settings are a window of their own beside the main one.
    [[nodiscard]] bool isSettingsPresented() const { return m_isSettingsPresented; }
    void setIsSettingsPresented(bool isPresented);

    Q_INVOKABLE void newAction();
    Q_INVOKABLE void openActionLibrary();
    Q_INVOKABLE void openMoreSheet();

Q_SIGNALS:
    void isMoreSheetPresentedChanged();
    void isStudioPresentedChanged();
    void isInputModalPresentedChanged();
    void isActionLibraryPresentedChanged();
    void isEngineRoomPresentedChanged();
    void isUsagePresentedChanged();
    void isProviderConnectPresentedChanged();
    void hasSheetChanged();
    void isSettingsPresentedChanged();

private:
    AppViewModel &m_viewModel;
    bool m_isSettingsPresented = false;
};

} // namespace velarc
