#include "intake/x_selection.h"

#include "base/async.h"

#include <poll.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>
#include <vector>

namespace velarc {

using namespace std::chrono_literals;

namespace {

using SteadyClock = std::chrono::steady_clock;

// How long a wait looks away from its stop token.
constexpr auto kGlance = 50ms;

// An owner that offers more than this has lost its mind.
constexpr std::size_t kMostTargets = 1000;

struct FreeDeleter
{
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Reply> using Owned = std::unique_ptr<Reply, FreeDeleter>;

struct ConnectionDeleter
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

using Connection = std::unique_ptr<xcb_connection_t, ConnectionDeleter>;

// Keeps the connection of a request that its owner has not answered. The answer goes to a window of
// ours: were that gone, the error would end a simple owner, and what was copied would be lost.
void leaveOpen(Connection connection)
{
    constexpr std::size_t mostLeftOpen = 16;
    static std::mutex mutex;
    static std::deque<Connection> leftOpen;
    const std::lock_guard lock(mutex);
    leftOpen.push_back(std::move(connection));
    if (leftOpen.size() > mostLeftOpen) {
        leftOpen.pop_front();
    }
}

// What a property of our window holds.
struct Property
{
    xcb_atom_t type = XCB_ATOM_NONE;
    QByteArray bytes;
};

} // namespace

// One reader of one selection: asks its owner to write a form to a property of a window that nobody
// sees, and reads it from there, whole or in pieces.
class XSelection::Transfer
{
public:
    Transfer(std::stop_token stop, SelectionBounds bounds);
    ~Transfer();
    Transfer(const Transfer &) = delete;
    Transfer &operator=(const Transfer &) = delete;

    [[nodiscard]] QList<xcb_atom_t> targets();
    [[nodiscard]] QStringList namesOf(const QList<xcb_atom_t> &atoms);
    [[nodiscard]] std::optional<QByteArray> formOf(const QByteArray &target);

private:
    std::stop_token m_stop;
    SelectionBounds m_bounds;
    Connection m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_window_t m_owner = XCB_WINDOW_NONE; // none: there is nothing to be had
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    xcb_atom_t m_incremental = XCB_ATOM_NONE;
    SteadyClock::time_point m_formDeadline;
    bool m_isUnderWay = false; // the owner was asked and is not done

    [[nodiscard]] xcb_connection_t *connection() const { return m_connection.get(); }
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const;
    void makeWindow();
    void findOwner();
    [[nodiscard]] std::optional<Property> convert(xcb_atom_t target);
    [[nodiscard]] std::optional<QByteArray> inPieces();
    [[nodiscard]] std::optional<Property> takeProperty();
    [[nodiscard]] Owned<xcb_generic_event_t> nextEvent(SteadyClock::time_point deadline);
    template <typename Event, typename Test>
    [[nodiscard]] Owned<xcb_generic_event_t> await(std::uint8_t kind, Test isIt);
};

XSelection::Transfer::Transfer(std::stop_token stop, SelectionBounds bounds)
    : m_stop(std::move(stop)), m_bounds(bounds), m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(connection()) != 0) {
        return;
    }
    m_clipboard = atom("CLIPBOARD");
    m_property = atom("VELARC_SELECTION");
    m_incremental = atom("INCR");
    makeWindow();
    findOwner();
}

XSelection::Transfer::~Transfer()
{
    if (m_isUnderWay) {
        leaveOpen(std::move(m_connection));
    }
}

xcb_atom_t XSelection::Transfer::atom(const QByteArray &name) const
{
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection(),
        xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.constData()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void XSelection::Transfer::makeWindow()
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection())).data;
    m_window = xcb_generate_id(connection());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
}

// Asks to hear of the owner's end, too, so that nobody waits for a program that is gone.
void XSelection::Transfer::findOwner()
{
    const Owned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection(), xcb_get_selection_owner(connection(), m_clipboard), nullptr));
    if (!reply || reply->owner == XCB_WINDOW_NONE) {
        return;
    }
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const Owned<xcb_generic_error_t> failure(xcb_request_check(connection(),
        xcb_change_window_attributes_checked(
            connection(), reply->owner, XCB_CW_EVENT_MASK, &events)));
    if (!failure) {
        m_owner = reply->owner;
    }
}

Owned<xcb_generic_event_t> XSelection::Transfer::nextEvent(SteadyClock::time_point deadline)
{
    for (;;) {
        throwIfStopped(m_stop);
        if (xcb_generic_event_t *event = xcb_poll_for_event(connection())) {
            return Owned<xcb_generic_event_t>(event);
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            std::min(deadline, m_formDeadline) - SteadyClock::now());
        if (left <= 0ms || xcb_connection_has_error(connection()) != 0) {
            return nullptr;
        }
        pollfd socket{xcb_get_file_descriptor(connection()), POLLIN, 0};
        ::poll(&socket, 1,
            static_cast<int>(std::min<std::chrono::milliseconds>(left, kGlance).count()));
    }
}

// The next event of `kind` that `isIt`. Without one the owner counts as gone.
template <typename Event, typename Test>
Owned<xcb_generic_event_t> XSelection::Transfer::await(std::uint8_t kind, Test isIt)
{
    const auto deadline = SteadyClock::now() + m_bounds.silence;
    while (auto event = nextEvent(deadline)) {
        const std::uint8_t type = event->response_type & 0x7f;
        if (type == kind && isIt(*reinterpret_cast<const Event *>(event.get()))) {
            return event;
        }
        if (type == XCB_DESTROY_NOTIFY
            && reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get())->window
                == m_owner) {
            m_isUnderWay = false;
            break;
        }
    }
    m_owner = XCB_WINDOW_NONE;
    return nullptr;
}

std::optional<Property> XSelection::Transfer::takeProperty()
{
    const auto words =
        static_cast<std::uint32_t>(std::clamp<qint64>(m_bounds.bytes / 4 + 1, 1, 0x1fffffff));
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection(),
        xcb_get_property(
            connection(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, words),
        nullptr));
    if (!reply || reply->bytes_after > 0) {
        return std::nullopt;
    }
    return Property{reply->type,
        QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get()))};
}

std::optional<Property> XSelection::Transfer::convert(xcb_atom_t target)
{
    if (m_owner == XCB_WINDOW_NONE || target == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    m_formDeadline = SteadyClock::now() + m_bounds.form;
    xcb_delete_property(connection(), m_window, m_property);
    xcb_convert_selection(
        connection(), m_window, m_clipboard, target, m_property, XCB_CURRENT_TIME);
    xcb_flush(connection());
    m_isUnderWay = true;

    using Answer = xcb_selection_notify_event_t;
    const auto event = await<Answer>(XCB_SELECTION_NOTIFY, [&](const Answer &answer) {
        return answer.requestor == m_window && answer.target == target;
    });
    if (!event) {
        return std::nullopt;
    }
    const bool isRefused = reinterpret_cast<const Answer *>(event.get())->property == XCB_ATOM_NONE;
    auto property = isRefused ? std::nullopt : takeProperty();
    if (property && property->type == m_incremental) {
        auto pieces = inPieces();
        return pieces ? std::optional(Property{target, std::move(*pieces)}) : std::nullopt;
    }
    m_isUnderWay = false;
    return property;
}

// Each piece that is taken asks for the next one; an empty one is the last.
std::optional<QByteArray> XSelection::Transfer::inPieces()
{
    using Change = xcb_property_notify_event_t;
    QByteArray whole;
    for (;;) {
        xcb_flush(connection());
        const auto event = await<Change>(XCB_PROPERTY_NOTIFY, [this](const Change &change) {
            return change.window == m_window && change.atom == m_property
                && change.state == XCB_PROPERTY_NEW_VALUE;
        });
        const auto piece = event ? takeProperty() : std::nullopt;
        if (!piece || whole.size() + piece->bytes.size() > m_bounds.bytes) {
            m_owner = XCB_WINDOW_NONE; // it would go on with the rest
            return std::nullopt;
        }
        if (piece->bytes.isEmpty()) {
            m_isUnderWay = false;
            return whole;
        }
        whole += piece->bytes;
    }
}

QList<xcb_atom_t> XSelection::Transfer::targets()
{
    const auto property = convert(atom("TARGETS"));
    if (!property) {
        return {};
    }
    const std::size_t count = std::min<std::size_t>(
        static_cast<std::size_t>(property->bytes.size()) / sizeof(xcb_atom_t), kMostTargets);
    QList<xcb_atom_t> atoms(static_cast<qsizetype>(count));
    if (count > 0) {
        std::memcpy(atoms.data(), property->bytes.constData(), count * sizeof(xcb_atom_t));
    }
    return atoms;
}

QStringList XSelection::Transfer::namesOf(const QList<xcb_atom_t> &atoms)
{
    std::vector<xcb_get_atom_name_cookie_t> asked; // all at once: one round trip
    asked.reserve(static_cast<std::size_t>(atoms.size()));
    for (const xcb_atom_t atom : atoms) {
        asked.push_back(xcb_get_atom_name(connection(), atom));
    }
    QStringList names;
    for (const auto cookie : asked) {
        const Owned<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(connection(), cookie, nullptr));
        if (reply) {
            names.append(QString::fromLatin1(
                xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get())));
        }
    }
    return names;
}

std::optional<QByteArray> XSelection::Transfer::formOf(const QByteArray &target)
{
    if (m_owner == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    auto property = convert(atom(target));
    return property ? std::optional(std::move(property->bytes)) : std::nullopt;
}

XSelection::XSelection(std::stop_token stop, SelectionBounds bounds)
    : m_transfer(std::make_unique<Transfer>(std::move(stop), bounds))
{
}

XSelection::~XSelection() = default;

QStringList XSelection::names()
{
    return m_transfer->namesOf(m_transfer->targets());
}

std::optional<QByteArray> XSelection::bytes(const QString &name)
{
    return m_transfer->formOf(name.toLatin1());
}

} // namespace velarc
