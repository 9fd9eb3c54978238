#pragma once

// The main window: the screens over a state object, in a size that is remembered.

#include "entry/window_state.h"
#include "ui/caret_rest.h"
#include "ui/desktop_appearance.h"
#include "ui/screens.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>
#include <optional>

namespace velarc {

class AppViewModel;

// Has Quick draw without a graphics driver unless the user's environment names another way: that
// takes a third of the time and memory. Called once, before the first window.
void chooseRenderer();

// Main thread only. Shown from its birth.
class MainWindow final : public QObject
{
    Q_OBJECT

public:
    // `viewModel` must outlive it.
    explicit MainWindow(AppViewModel &viewModel, QString statePath = windowStatePath());
    ~MainWindow() override;

    [[nodiscard]] QQuickWindow &window() { return *m_window; }

    // Brings the window before the user, from a minimised one too.
    void raise();

Q_SIGNALS:
    // The user closed it.
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QString m_statePath;
    WindowState m_state; // as it was found, and as it is left
    Screens m_screens;
    DesktopAppearance m_desktop;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::optional<CaretRest> m_caretRest;

    void rememberState();
};

} // namespace velarc
