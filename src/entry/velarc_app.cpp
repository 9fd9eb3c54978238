#include "entry/velarc_app.h"

#include "actions/catalogue.h"
#include "engines/on_device_services.h"
#include "run/windowless_seams.h"
#include "store/sqlite_defaults_domain.h"

namespace velarc {

std::shared_ptr<const LocalStore> openSharedStore()
{
    // The domain names files that it moves aside by the time; it lives as long as this clock.
    static const SystemClock kClock;
    return std::make_shared<const LocalStore>(
        std::make_shared<SqliteDefaultsDomain>(defaultsFiles(), kClock), &builtInActions);
}

AppServices makeServices(std::shared_ptr<const LocalStore> store)
{
    AppServices services;
    services.clock = std::make_shared<SystemClock>();
    services.scope = std::make_shared<TaskScope>();
    services.store = std::move(store);
    services.onDeviceModel = absentOnDeviceModel();
    services.appleIntelligenceService =
        std::make_shared<AppleIntelligenceService>(services.onDeviceModel);
    services.appleImageService = std::make_shared<AppleImageService>();
    const auto clipboard = std::make_shared<EmptyClipboard>();
    services.clipboard = clipboard;
    services.clipboardText = clipboard;
    services.clipboardWriting = clipboard;
    services.files = std::make_shared<NoFiles>();
    services.pdfExport = std::make_shared<NoPdfExport>();
    services.systemActions = std::make_shared<NoSystemActions>();
    return services;
}

VelarcApp::VelarcApp()
{
    AppServices services = makeServices(openSharedStore());
    m_scope = services.scope;
    m_viewModel = std::make_unique<AppViewModel>(std::move(services));
}

VelarcApp::~VelarcApp()
{
    m_scope->finish();
}

} // namespace velarc
