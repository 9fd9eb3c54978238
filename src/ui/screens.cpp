#include "ui/screens.h"

#include "run/app_view_model.h"
#include "ui/image_providers.h"
#include "ui/secret_input_face.h"

#include <QQmlEngine>

// Generated: makes the module's types known, which a static library does not do by itself.
void qml_register_types_Velarc();

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kScreensProperty = "velarcScreens";

} // namespace

Screens::Screens(AppViewModel &viewModel, std::shared_ptr<FileChoosing> files,
    std::shared_ptr<Sharing> sharing, QObject *parent)
    : QObject(parent)
    , m_viewModel(viewModel)
    , m_canvas(viewModel)
    , m_connectSheet(viewModel)
    , m_home(viewModel)
    , m_library(viewModel)
    , m_more(viewModel)
    , m_result(viewModel, m_picture)
    , m_share(viewModel, files, std::move(sharing))
    , m_studio(viewModel)
    , m_transfer(viewModel, std::move(files))
    , m_usage(viewModel)
    , m_shell(viewModel)
    , m_sidebar(viewModel)
{
}

void Screens::attachTo(QQmlEngine &engine)
{
    qml_register_types_Velarc();
    showSecretInputsToAssistivePrograms();
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.setProperty(kScreensProperty, QVariant::fromValue(this));
    addImageProviders(engine);
    engine.addImageProvider(u"result"_s, new ResultPictureProvider(m_picture));
}

EngineRoomPresenter *Screens::engineRoom(QObject *view)
{
    auto *presenter = new EngineRoomPresenter(m_viewModel, this);
    // Later: the view's bindings still look at it while it goes.
    connect(view, &QObject::destroyed, presenter, &QObject::deleteLater);
    return presenter;
}

Screens *Screens::create(QQmlEngine *engine, QJSEngine * /*scriptEngine*/)
{
    auto *screens = engine->property(kScreensProperty).value<Screens *>();
    Q_ASSERT_X(screens != nullptr, "Screens", "attachTo() comes before the first screen");
    QJSEngine::setObjectOwnership(screens, QJSEngine::CppOwnership);
    return screens;
}

} // namespace velarc
