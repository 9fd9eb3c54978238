#include "entry/main_window.h"

#include "run/app_view_model.h"
#include "ui/desktop_sharing.h"
#include "ui/portal_file_chooser.h"

#include <QEvent>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QScreen>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kDefaultSize(1200, 820);

// What was remembered from a larger screen would reach beyond this one.
QSize fittedToScreen(QSize size)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen == nullptr ? size : size.boundedTo(screen->availableSize());
}

std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine &engine, QSize size)
{
    QQmlComponent component(&engine, QUrl(u"qrc:/qt/qml/Velarc/Main.qml"_s));
    if (!component.isReady()) {
        qFatal("%s", qPrintable(component.errorString()));
    }
    return std::unique_ptr<QQuickWindow>(qobject_cast<QQuickWindow *>(
        component.createWithInitialProperties({{u"startSize"_s, size}})));
}

} // namespace

void chooseRenderer()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")
        && qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

MainWindow::MainWindow(AppViewModel &viewModel, QString statePath)
    : m_statePath(std::move(statePath))
    , m_state(loadWindowState(m_statePath))
    , m_screens(
          viewModel, std::make_shared<PortalFileChooser>(), std::make_shared<DesktopSharing>())
    , m_desktop(*m_screens.appearance(), m_state.isDark)
{
    m_screens.attachTo(m_engine);
    m_window = makeWindow(m_engine, fittedToScreen(m_state.size.value_or(kDefaultSize)));
    m_window->installEventFilter(this);
    m_caretRest.emplace(*m_window);
    m_window->show();
    raise();
}

MainWindow::~MainWindow()
{
    m_caretRest.reset();
    m_window.reset();
}

void MainWindow::raise()
{
    if ((m_window->windowStates() & Qt::WindowMinimized) != 0) {
        m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    }
    m_window->setVisible(true); // show() would take it out of its maximised state
    m_window->raise();
    m_window->requestActivate();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close) {
        rememberState();
        Q_EMIT closed();
    }
    return QObject::eventFilter(watched, event);
}

void MainWindow::rememberState()
{
    if (m_window->visibility() == QWindow::Windowed) {
        m_state.size = m_window->size();
    }
    m_state.isDark = m_screens.appearance()->isDark();
    saveWindowState(m_state, m_statePath);
}

} // namespace velarc
