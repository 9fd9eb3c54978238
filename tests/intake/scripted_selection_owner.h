#pragma once

// An owner of the X clipboard that misbehaves as a test says, on a thread of its own.

#include <cstdint>
#include <memory>
#include <thread>

namespace velarc {

// The window that owns the X clipboard now; 0 if none does.
[[nodiscard]] std::uint32_t clipboardOwner();

class ScriptedSelectionOwner
{
public:
    enum class Behaviour
    {
        NeverAnswers,
        Refuses, // has nothing in any form
        OffersNonsense, // a list of forms that is no list
        StopsAfterOnePiece,
        NeverEnds, // piece after piece, for ever
        DiesAfterOnePiece,
        SendsPieces // three of them, "one two three"
    };

    // Owns the selection when it is made.
    explicit ScriptedSelectionOwner(Behaviour behaviour);
    ~ScriptedSelectionOwner(); // gives the selection up
    ScriptedSelectionOwner(const ScriptedSelectionOwner &) = delete;
    ScriptedSelectionOwner &operator=(const ScriptedSelectionOwner &) = delete;

    class Connection;

private:
    std::unique_ptr<Connection> m_connection;
    std::jthread m_thread;
};

} // namespace velarc
