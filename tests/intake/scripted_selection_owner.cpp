#include "scripted_selection_owner.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace velarc {

using Behaviour = ScriptedSelectionOwner::Behaviour;

namespace {

xcb_atom_t atomOf(xcb_connection_t *connection, std::string_view name)
{
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const xcb_atom_t number = reply->atom;
    std::free(reply);
    return number;
}

} // namespace

std::uint32_t clipboardOwner()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    xcb_get_selection_owner_reply_t *reply = xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, atomOf(connection, "CLIPBOARD")), nullptr);
    const std::uint32_t owner = reply->owner;
    std::free(reply);
    xcb_disconnect(connection);
    return owner;
}

class ScriptedSelectionOwner::Connection
{
public:
    explicit Connection(Behaviour behaviour)
        : m_behaviour(behaviour), m_connection(xcb_connect(nullptr, nullptr))
    {
        EXPECT_EQ(xcb_connection_has_error(m_connection), 0);
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        m_targets = atom("TARGETS");
        m_incremental = atom("INCR");
        xcb_set_selection_owner(m_connection, m_window, atom("CLIPBOARD"), XCB_CURRENT_TIME);
        std::free(xcb_get_input_focus_reply(
            m_connection, xcb_get_input_focus(m_connection), nullptr)); // by now it is the owner
    }
    ~Connection() { xcb_disconnect(m_connection); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void serve(const std::stop_token &stop)
    {
        while (!stop.stop_requested() && m_window != XCB_WINDOW_NONE) {
            if (xcb_generic_event_t *event = xcb_poll_for_event(m_connection)) {
                answer(event);
                std::free(event);
                continue;
            }
            pollfd socket{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            ::poll(&socket, 1, 20);
        }
    }

private:
    Behaviour m_behaviour;
    xcb_connection_t *m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_targets = XCB_ATOM_NONE;
    xcb_atom_t m_incremental = XCB_ATOM_NONE;
    xcb_selection_request_event_t m_transfer{}; // that goes on in pieces
    std::size_t m_piecesSent = 0;

    [[nodiscard]] xcb_atom_t atom(std::string_view name) const
    {
        return atomOf(m_connection, name);
    }

    void answer(const xcb_generic_event_t *event)
    {
        const int type = event->response_type & 0x7f;
        if (type == XCB_SELECTION_REQUEST) {
            answerRequest(*reinterpret_cast<const xcb_selection_request_event_t *>(event));
        } else if (type == XCB_PROPERTY_NOTIFY) {
            const auto &change = *reinterpret_cast<const xcb_property_notify_event_t *>(event);
            if (change.window == m_transfer.requestor && change.atom == m_transfer.property
                && change.state == XCB_PROPERTY_DELETE) {
                sendPiece();
            }
        }
        xcb_flush(m_connection);
    }

    void answerRequest(const xcb_selection_request_event_t &request)
    {
        if (m_behaviour == Behaviour::NeverAnswers) {
            return;
        }
        if (m_behaviour == Behaviour::Refuses) {
            notify(request, XCB_ATOM_NONE);
        } else if (m_behaviour == Behaviour::OffersNonsense) {
            write(request, XCB_ATOM_STRING, 8, 3, "abc");
            notify(request, request.property);
        } else if (request.target == m_targets) {
            const std::array<xcb_atom_t, 3> offered{m_targets, atom("UTF8_STRING"), 0x1ffffff};
            write(request, XCB_ATOM_ATOM, 32, offered.size(), offered.data());
            notify(request, request.property);
        } else {
            beginPieces(request);
        }
    }

    void beginPieces(const xcb_selection_request_event_t &request)
    {
        m_transfer = request;
        m_piecesSent = 0;
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, request.requestor, XCB_CW_EVENT_MASK, &events);
        const std::uint32_t length = 1;
        write(request, m_incremental, 32, 1, &length);
        notify(request, request.property);
    }

    void sendPiece()
    {
        constexpr std::array<std::string_view, 4> pieces{"one ", "two ", "three", ""};
        const std::size_t number = m_piecesSent++;
        const bool isSecond = number > 0;
        if (isSecond && m_behaviour == Behaviour::StopsAfterOnePiece) {
            return;
        }
        if (isSecond && m_behaviour == Behaviour::DiesAfterOnePiece) {
            xcb_destroy_window(m_connection, m_window);
            m_window = XCB_WINDOW_NONE;
            return;
        }
        const bool goesOn = m_behaviour == Behaviour::NeverEnds;
        const std::string_view piece = pieces.at(goesOn ? 0 : std::min<std::size_t>(number, 3));
        write(m_transfer, m_transfer.target, 8, piece.size(), piece.data());
    }

    void write(const xcb_selection_request_event_t &request, xcb_atom_t type, std::uint8_t bits,
        std::size_t count, const void *content)
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor,
            request.property, type, bits, static_cast<std::uint32_t>(count), content);
    }

    void notify(const xcb_selection_request_event_t &request, xcb_atom_t property)
    {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(
            m_connection, 0, request.requestor, 0, reinterpret_cast<const char *>(&event));
    }
};

ScriptedSelectionOwner::ScriptedSelectionOwner(Behaviour behaviour)
    : m_connection(std::make_unique<Connection>(behaviour))
    , m_thread([this](const std::stop_token &stop) { m_connection->serve(stop); })
{
}

ScriptedSelectionOwner::~ScriptedSelectionOwner()
{
    m_thread.request_stop();
    m_thread.join();
}

} // namespace velarc
