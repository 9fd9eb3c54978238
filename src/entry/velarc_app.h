#pragma once

// The composition root: builds the store, the services and the state object, and owns them for the
// life of the process.

#include "entry/shared_store.h"
#include "run/app_view_model.h"

#include <memory>

namespace velarc {

// All services over `store`, each new.
[[nodiscard]] AppServices makeServices(std::shared_ptr<const LocalStore> store);

class VelarcApp
{
public:
    VelarcApp() : VelarcApp(makeServices(openSharedStore())) {}
    explicit VelarcApp(AppServices services);

    // Stops all tasks, lets them end, then destroys the state object and its services.
    ~VelarcApp();

    [[nodiscard]] AppViewModel &viewModel() { return *m_viewModel; }

private:
    std::shared_ptr<TaskScope> m_scope;
    std::unique_ptr<AppViewModel> m_viewModel;
};

} // namespace velarc
