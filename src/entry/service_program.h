#pragma once

// `velarc-cli serve`: the name com.tolmar.velarc.Actions on the session bus, with what other
// programs and the searches of the desktops ask of Velarc without its window.

#include "entry/service_parts.h"

#include <QDBusConnection>
#include <QObject>

namespace velarc {

// Nobody has asked for anything, and no run goes on: the bus starts the program again when needed.
inline constexpr std::chrono::seconds kServiceIdleTime{30};

// Stops its token when the connection ends.
class BusEnd final : public QObject
{
    Q_OBJECT

public:
    explicit BusEnd(QDBusConnection bus);
    [[nodiscard]] std::stop_token token() const { return m_stop.get_token(); }

public Q_SLOTS:
    void noteEnd();

private:
    std::stop_source m_stop;
};

// Serves on `bus` until nobody has asked for `idleTime`, or the bus goes. False if the name could
// not be had.
//
// Main thread only. Stop: CancellationError; runs that go on are the scope's to end.
[[nodiscard]] QCoro::Task<bool> serveOnBus(QDBusConnection bus, ServiceParts parts,
    std::chrono::milliseconds idleTime, std::stop_token stop);

// Opens the window, off the main thread; see ServiceParts.
[[nodiscard]] std::function<void(std::optional<QUuid>, ActivationContext)> windowOpener();

} // namespace velarc
