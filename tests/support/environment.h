#pragma once

// Environment variables that a test sets for itself.

#include <cstdlib>
#include <optional>
#include <string>

namespace velarc {

// Sets an environment variable, or takes it away, and restores it in the end.
//
// For tests of one thread: nothing else may read the environment meanwhile.
class ScopedVariable
{
public:
    // None takes the variable away.
    ScopedVariable(const char *name, const std::optional<std::string> &value) : m_name(name)
    {
        if (const char *old = std::getenv(name)) {
            m_old = old;
        }
        assign(value);
    }
    ~ScopedVariable() { assign(m_old); }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

private:
    void assign(const std::optional<std::string> &value) const
    {
        if (value) {
            setenv(m_name, value->c_str(), 1);
        } else {
            unsetenv(m_name);
        }
    }

    const char *m_name;
    std::optional<std::string> m_old;
};

} // namespace velarc
