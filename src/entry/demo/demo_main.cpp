// velarc-demo: the real window over engines that only act as if. It needs no key and no network,
// and keeps nothing.

#include "engines/on_device_services.h"
#include "entry/demo/demo_engines.h"
#include "entry/desktop_services.h"
#include "entry/interruption.h"
#include "entry/main_window.h"
#include "entry/velarc_app.h"
#include "store/memory_defaults_domain.h"

#include <QGuiApplication>
#include <QTemporaryDir>

using namespace velarc;
using namespace Qt::StringLiterals;

namespace {

AppServices demoServices()
{
    return overDemoEngines(makeDesktopServices(std::make_shared<const LocalStore>(
        std::make_shared<MemoryDefaultsDomain>(), &demoActions)));
}

} // namespace

int main(int argc, char **argv)
{
    const QTemporaryDir folder; // for the files that results are written to
    qputenv("TMPDIR", folder.path().toUtf8());
    chooseRenderer();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(u"Velarc demo"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const Interruption interruption;
    const std::stop_callback end(interruption.token(), [] { QGuiApplication::quit(); });

    VelarcApp app(demoServices());
    MainWindow window(app.viewModel(), folder.filePath(u"window.json"_s));
    QObject::connect(
        &window, &MainWindow::closed, &application, &QGuiApplication::quit, Qt::QueuedConnection);
    return QGuiApplication::exec();
}
