#include "entry/window_program.h"

#include "entry/desktop_services.h"
#include "entry/window_import.h"

#include <QGuiApplication>

#include <algorithm>

namespace velarc {

WindowHandlers WindowProgram::handlers()
{
    WindowHandlers handlers;
    handlers.present = [this](const ActivationContext &context) { present(context); };
    handlers.openUrl = [this](const QUrl &url) { m_app->viewModel().handleOpenURL(url); };
    handlers.selectAction = [this](const QUuid &id) { selectAction(id); };
    handlers.copy = [this](const CopiedThing &thing) { copy(thing); };
    handlers.import = [this](const QByteArray &json, const TakeImportAnswer &answer) {
        static_cast<void>(importActions(&m_app->viewModel(), json, answer)); // ends with the scope
    };
    return handlers;
}

void WindowProgram::start()
{
    AppServices services = makeDesktopServices(openSharedStore());
    m_clipboard = services.clipboardWriting;
    m_app.emplace(std::move(services));
}

void WindowProgram::present(const ActivationContext &context)
{
    context.giveBack(); // Qt takes the token from there when it activates a window
    if (m_window) {
        m_window->raise();
        return;
    }
    m_window = std::make_unique<MainWindow>(m_app->viewModel());
    QObject::connect(
        m_window.get(), &MainWindow::closed, qGuiApp, &QGuiApplication::quit, Qt::QueuedConnection);
}

void WindowProgram::selectAction(const QUuid &id)
{
    ActionLibrary &library = m_app->viewModel().library();
    const QList<AIAction> visible = library.visibleActions();
    const bool isVisible = std::any_of(
        visible.begin(), visible.end(), [&](const AIAction &action) { return action.id == id; });
    if (isVisible) {
        library.selectAction(id);
    }
}

void WindowProgram::copy(const CopiedThing &thing)
{
    if (thing.kind == CopiedThing::Kind::Picture) {
        m_clipboard->writeImage(thing.bytes);
    } else {
        m_clipboard->writeText(QString::fromUtf8(thing.bytes));
    }
}

} // namespace velarc
