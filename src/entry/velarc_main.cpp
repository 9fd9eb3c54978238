// velarc: the window. Takes one address of the scheme "velarc" as its argument, if any.

#include "entry/desktop_services.h"
#include "entry/main_window.h"
#include "entry/process_hardening.h"
#include "entry/velarc_app.h"

#include <QGuiApplication>

using namespace velarc;
using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    keepMemoryPrivate();
    chooseRenderer();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(u"Velarc"_s);
    QGuiApplication::setDesktopFileName(u"com.tolmar.velarc"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    // Destroyed from the last to the first: the window, then the runs, then the display, which
    // hands what was copied over to the desktop.
    VelarcApp app(makeDesktopServices(openSharedStore()));
    MainWindow window(app.viewModel());
    QObject::connect(
        &window, &MainWindow::closed, &application, &QGuiApplication::quit, Qt::QueuedConnection);

    const QString address = QGuiApplication::arguments().value(1);
    if (!address.isEmpty()) {
        app.viewModel().handleOpenURL(QUrl(address));
    }
    return QGuiApplication::exec();
}
