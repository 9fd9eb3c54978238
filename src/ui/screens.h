#pragma once

// What the screens see of the program: a presenter for each, and how the desktop wants them to
// look.

#include "ui/appearance.h"
#include "ui/canvas_presenter.h"
#include "ui/home_presenter.h"
#include "ui/result_presenter.h"
#include "ui/share_presenter.h"
#include "ui/shell_presenter.h"
#include "ui/sidebar_presenter.h"

#include <QObject>
#include <QtQmlIntegration>

#include <memory>

class QJSEngine;
class QQmlEngine;

namespace velarc {

class AppViewModel;
class Sharing;

// The one object that QML starts from. A presenter turns published fields into what a screen binds
// to, and passes on what the user does; it holds no state that the program must know.
//
// Main thread only.
class Screens : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(velarc::Appearance *appearance READ appearance CONSTANT)
    Q_PROPERTY(velarc::CanvasPresenter *canvas READ canvas CONSTANT)
    Q_PROPERTY(velarc::HomePresenter *home READ home CONSTANT)
    Q_PROPERTY(velarc::ResultPresenter *result READ result CONSTANT)
    Q_PROPERTY(velarc::SharePresenter *share READ share CONSTANT)
    Q_PROPERTY(velarc::ShellPresenter *shell READ shell CONSTANT)
    Q_PROPERTY(velarc::SidebarPresenter *sidebar READ sidebar CONSTANT)

public:
    // `viewModel` must outlive it. Without `sharing` results can be copied and saved only.
    explicit Screens(AppViewModel &viewModel, QObject *parent = nullptr);
    Screens(AppViewModel &viewModel, std::shared_ptr<Sharing> sharing, QObject *parent = nullptr);

    // Has `engine` use this object, and gives it the pictures. The engine goes first.
    void attachTo(QQmlEngine &engine);

    // For QML: the object that was attached to the engine.
    static Screens *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    [[nodiscard]] Appearance *appearance() { return &m_appearance; }
    [[nodiscard]] CanvasPresenter *canvas() { return &m_canvas; }
    [[nodiscard]] HomePresenter *home() { return &m_home; }
    [[nodiscard]] ResultPresenter *result() { return &m_result; }
    [[nodiscard]] SharePresenter *share() { return &m_share; }
    [[nodiscard]] ShellPresenter *shell() { return &m_shell; }
    [[nodiscard]] SidebarPresenter *sidebar() { return &m_sidebar; }

private:
    Appearance m_appearance;
    CanvasPresenter m_canvas;
    HomePresenter m_home;
    std::shared_ptr<ShownPicture> m_picture = std::make_shared<ShownPicture>();
    ResultPresenter m_result;
    SharePresenter m_share;
    ShellPresenter m_shell;
    SidebarPresenter m_sidebar;
};

} // namespace velarc
