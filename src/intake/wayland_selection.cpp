#include "intake/wayland_selection.h"

#include "base/async.h"

#include <QGuiApplication>
#include <QHash>
#include <qpa/qplatformnativeinterface.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <wayland-client.h>

namespace velarc {

using namespace std::chrono_literals;

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kGlance = 50ms; // between two looks at the stop token
constexpr qsizetype kMostForms = 1000;
constexpr qsizetype kPieceBytes = 1 << 20;
constexpr std::uint32_t kManagerVersion = 1;

template <typename Resource> Resource *nativeResource(const char *name)
{
    QPlatformNativeInterface *native = QGuiApplication::platformNativeInterface();
    return native != nullptr ? static_cast<Resource *>(native->nativeResourceForIntegration(name))
                             : nullptr;
}

class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { ::close(m_number); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    // Whether there is something to read, or an end, by then.
    [[nodiscard]] bool isReadyBy(
        SteadyClock::time_point deadline, const std::stop_token &stop) const
    {
        for (;;) {
            throwIfStopped(stop);
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
            if (left <= 0ms) {
                return false;
            }
            pollfd end{m_number, POLLIN, 0};
            const auto wait = std::min<std::chrono::milliseconds>(left, kGlance);
            if (::poll(&end, 1, static_cast<int>(wait.count())) > 0) {
                return true;
            }
        }
    }

    [[nodiscard]] ssize_t read(char *into, qsizetype count) const
    {
        return ::read(m_number, into, static_cast<std::size_t>(count));
    }

private:
    int m_number;
};

} // namespace

// A data device of our own on Qt's connection, with a queue of its own, which whoever reads turns.
class WaylandSeat::Connection
{
public:
    Connection(wl_display *display, wl_seat *seat)
        : m_display(display), m_queue(wl_display_create_queue(display))
    {
        auto *wrapped = static_cast<wl_display *>(wl_proxy_create_wrapper(display));
        wl_proxy_set_queue(reinterpret_cast<wl_proxy *>(wrapped), m_queue);
        m_registry = wl_display_get_registry(wrapped);
        wl_proxy_wrapper_destroy(wrapped);
        wl_registry_add_listener(m_registry, &kRegistryListener, this);
        wl_display_roundtrip_queue(display, m_queue);
        if (m_manager != nullptr) {
            m_device = wl_data_device_manager_get_data_device(m_manager, seat);
            wl_data_device_add_listener(m_device, &kDeviceListener, this);
        }
    }

    ~Connection() = delete;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    [[nodiscard]] QStringList formNames()
    {
        const std::lock_guard lock(m_mutex);
        return isCurrent() ? m_offers.value(m_selection) : QStringList();
    }

    [[nodiscard]] int request(const QString &name)
    {
        const std::lock_guard lock(m_mutex);
        int ends[2]{-1, -1};
        if (!isCurrent() || !m_offers.value(m_selection).contains(name)
            || ::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
            return -1;
        }
        // The owner writes as if there were always room.
        ::fcntl(ends[1], F_SETFL, 0);
        wl_data_offer_receive(m_selection, name.toUtf8().constData(), ends[1]);
        wl_display_flush(m_display);
        ::close(ends[1]);
        return ends[0];
    }

private:
    std::mutex m_mutex; // guards all that follows
    wl_display *m_display;
    wl_event_queue *m_queue;
    wl_registry *m_registry = nullptr;
    wl_data_device_manager *m_manager = nullptr;
    wl_data_device *m_device = nullptr;
    QHash<wl_data_offer *, QStringList> m_offers;
    wl_data_offer *m_selection = nullptr;

    // Whether there is something on the clipboard, after all that the compositor has told by now.
    bool isCurrent()
    {
        return wl_display_roundtrip_queue(m_display, m_queue) >= 0 && m_selection != nullptr;
    }

    void drop(wl_data_offer *offer)
    {
        if (m_offers.remove(offer) > 0) {
            wl_data_offer_destroy(offer);
        }
    }

    static Connection &of(void *self) { return *static_cast<Connection *>(self); }

    static void onGlobal(
        void *self, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t)
    {
        if (QLatin1StringView(interface) == QLatin1StringView(wl_data_device_manager_interface.name)
            && of(self).m_manager == nullptr) {
            of(self).m_manager = static_cast<wl_data_device_manager *>(wl_registry_bind(
                registry, name, &wl_data_device_manager_interface, kManagerVersion));
        }
    }
    static void onGlobalGone(void *, wl_registry *, std::uint32_t) {}

    static void onOffer(void *self, wl_data_device *, wl_data_offer *offer)
    {
        of(self).m_offers.insert(offer, {});
        wl_data_offer_add_listener(offer, &kOfferListener, self);
    }
    static void onForm(void *self, wl_data_offer *offer, const char *name)
    {
        QStringList &names = of(self).m_offers[offer];
        if (names.size() < kMostForms) {
            names.append(QString::fromUtf8(name));
        }
    }
    static void onSelection(void *self, wl_data_device *, wl_data_offer *offer)
    {
        if (of(self).m_selection != offer) {
            of(self).drop(of(self).m_selection);
        }
        of(self).m_selection = offer;
    }

    // What is dragged over our windows is Qt's affair.
    static void onEnter(void *self, wl_data_device *, std::uint32_t, wl_surface *, wl_fixed_t,
        wl_fixed_t, wl_data_offer *offer)
    {
        of(self).drop(offer);
    }
    static void onLeave(void *, wl_data_device *) {}
    static void onMotion(void *, wl_data_device *, std::uint32_t, wl_fixed_t, wl_fixed_t) {}
    static void onDrop(void *, wl_data_device *) {}

    static constexpr wl_registry_listener kRegistryListener{&onGlobal, &onGlobalGone};
    static constexpr wl_data_device_listener kDeviceListener{
        &onOffer, &onEnter, &onLeave, &onMotion, &onDrop, &onSelection};
    static constexpr wl_data_offer_listener kOfferListener{&onForm, nullptr, nullptr};
};

WaylandSeat *WaylandSeat::ofThisSession()
{
    static WaylandSeat *theOne = nullptr;
    if (theOne == nullptr
        && QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
        auto *display = nativeResource<wl_display>("wl_display");
        auto *seat = nativeResource<wl_seat>("wl_seat");
        if (display != nullptr && seat != nullptr) {
            theOne = new WaylandSeat(new Connection(display, seat));
        }
    }
    return theOne;
}

WaylandSeat::WaylandSeat(Connection *connection) : m_connection(connection) {}

QStringList WaylandSeat::formNames()
{
    return m_connection->formNames();
}

int WaylandSeat::request(const QString &name)
{
    return m_connection->request(name);
}

WaylandSelection::WaylandSelection(WaylandSeat &seat, std::stop_token stop, SelectionBounds bounds)
    : m_seat(seat), m_stop(std::move(stop)), m_bounds(bounds)
{
}

QStringList WaylandSelection::names()
{
    throwIfStopped(m_stop);
    return m_seat.formNames();
}

std::optional<QByteArray> WaylandSelection::bytes(const QString &name)
{
    throwIfStopped(m_stop);
    const int number = m_isSilent ? -1 : m_seat.request(name);
    if (number < 0) {
        return std::nullopt;
    }
    const Descriptor source(number);
    const auto formDeadline = SteadyClock::now() + m_bounds.form;
    QByteArray whole;
    for (;;) {
        if (!source.isReadyBy(
                std::min(SteadyClock::now() + m_bounds.silence, formDeadline), m_stop)) {
            m_isSilent = true;
            return std::nullopt;
        }
        const qsizetype before = whole.size();
        whole.resize(before + kPieceBytes);
        const ssize_t count = source.read(whole.data() + before, kPieceBytes);
        whole.truncate(before + std::max<ssize_t>(count, 0));
        if (count == 0) {
            return whole;
        }
        if ((count < 0 && errno != EAGAIN && errno != EINTR) || whole.size() > m_bounds.bytes) {
            return std::nullopt;
        }
    }
}

} // namespace velarc
