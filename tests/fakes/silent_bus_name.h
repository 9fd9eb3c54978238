#pragma once

#include <memory>

namespace velarc {

// A name on the session bus whose owner takes every call and does nothing about it.
//
// It has a connection of its own. Any thread.
class SilentBusName
{
public:
    enum class Calls
    {
        Unanswered,
        Acknowledged, // by an empty reply
    };

    // Throws std::runtime_error if the name cannot be had.
    explicit SilentBusName(const char *name, Calls calls = Calls::Unanswered);
    ~SilentBusName();
    SilentBusName(const SilentBusName &) = delete;
    SilentBusName &operator=(const SilentBusName &) = delete;

    // How many calls came.
    [[nodiscard]] int calls() const;

    // Blocks until so many calls have come; false if they have not after 20 s.
    [[nodiscard]] bool waitForCalls(int count) const;

private:
    struct Members;
    std::unique_ptr<Members> m_members;
};

} // namespace velarc
