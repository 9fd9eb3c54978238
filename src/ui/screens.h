#pragma once

// What the screens see of the program: a presenter for each, and how the desktop wants them to
// look.

#include "ui/appearance.h"
#include "ui/canvas_presenter.h"
#include "ui/connect_presenter.h"
#include "ui/engine_room_presenter.h"
#include "ui/home_presenter.h"
#include "ui/library_presenter.h"
#include "ui/more_presenter.h"
#include "ui/result_presenter.h"
#include "ui/share_presenter.h"
#include "ui/shell_presenter.h"
#include "ui/sidebar_presenter.h"
#include "ui/studio_presenter.h"
#include "ui/transfer_presenter.h"
#include "ui/usage_presenter.h"

#include <QObject>
#include <QtQmlIntegration>

class QJSEngine;
class QQmlEngine;

namespace velarc {

class AppViewModel;

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
    Q_PROPERTY(velarc::ConnectPresenter *connectSheet READ connectSheet CONSTANT)
    Q_PROPERTY(velarc::HomePresenter *home READ home CONSTANT)
    Q_PROPERTY(velarc::LibraryPresenter *library READ library CONSTANT)
    Q_PROPERTY(velarc::MorePresenter *more READ more CONSTANT)
    Q_PROPERTY(velarc::ResultPresenter *result READ result CONSTANT)
    Q_PROPERTY(velarc::SharePresenter *share READ share CONSTANT)
    Q_PROPERTY(velarc::ShellPresenter *shell READ shell CONSTANT)
    Q_PROPERTY(velarc::SidebarPresenter *sidebar READ sidebar CONSTANT)
    Q_PROPERTY(velarc::StudioPresenter *studio READ studio CONSTANT)
    Q_PROPERTY(velarc::TransferPresenter *transfer READ transfer CONSTANT)
    Q_PROPERTY(velarc::UsagePresenter *usage READ usage CONSTANT)

public:
    // `viewModel` must outlive it. Without `files` the screens ask for paths themselves; without
    // `sharing` results are copied and saved only.
    explicit Screens(AppViewModel &viewModel, std::shared_ptr<FileChoosing> files = nullptr,
        std::shared_ptr<Sharing> sharing = nullptr, QObject *parent = nullptr);

    // Has `engine` use this object, and gives it the pictures. The engine goes first.
    void attachTo(QQmlEngine &engine);

    // For QML: the object that was attached to the engine.
    static Screens *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    // A presenter for an Engine Room that stands in `view`. It goes with the view.
    [[nodiscard]] Q_INVOKABLE velarc::EngineRoomPresenter *engineRoom(QObject *view);

    [[nodiscard]] Appearance *appearance() { return &m_appearance; }
    [[nodiscard]] CanvasPresenter *canvas() { return &m_canvas; }
    [[nodiscard]] ConnectPresenter *connectSheet() { return &m_connectSheet; }
    [[nodiscard]] HomePresenter *home() { return &m_home; }
    [[nodiscard]] LibraryPresenter *library() { return &m_library; }
    [[nodiscard]] MorePresenter *more() { return &m_more; }
    [[nodiscard]] ResultPresenter *result() { return &m_result; }
    [[nodiscard]] SharePresenter *share() { return &m_share; }
    [[nodiscard]] ShellPresenter *shell() { return &m_shell; }
    [[nodiscard]] SidebarPresenter *sidebar() { return &m_sidebar; }
    [[nodiscard]] StudioPresenter *studio() { return &m_studio; }
    [[nodiscard]] TransferPresenter *transfer() { return &m_transfer; }
    [[nodiscard]] UsagePresenter *usage() { return &m_usage; }

private:
    AppViewModel &m_viewModel;
    Appearance m_appearance;
    CanvasPresenter m_canvas;
    ConnectPresenter m_connectSheet;
    HomePresenter m_home;
    LibraryPresenter m_library;
    MorePresenter m_more;
    std::shared_ptr<ShownPicture> m_picture = std::make_shared<ShownPicture>();
    ResultPresenter m_result;
    SharePresenter m_share;
    StudioPresenter m_studio;
    TransferPresenter m_transfer;
    UsagePresenter m_usage;
    ShellPresenter m_shell; // behind those that make a sheet ready: it shows them
    SidebarPresenter m_sidebar;
};

} // namespace velarc
