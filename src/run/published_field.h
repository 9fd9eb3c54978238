#pragma once

// A published field of the application state: a property that notifies on each write, also where
// the value written equals the one that stood.

#include <QObject>

#include <utility>

// Screens read the field.
#define VELARC_PUBLISHED(Type, name, Name)                                                         \
    Q_PROPERTY(Type name READ name NOTIFY name##Changed)                                           \
    VELARC_FIELD_MEMBERS(Type, name, Name)

// Screens read the field and edit it.
#define VELARC_EDITABLE(Type, name, Name)                                                          \
    Q_PROPERTY(Type name READ name WRITE set##Name NOTIFY name##Changed)                           \
    VELARC_FIELD_MEMBERS(Type, name, Name)

#define VELARC_FIELD_MEMBERS(Type, name, Name)                                                     \
public:                                                                                            \
    [[nodiscard]] const Type &name() const                                                         \
    {                                                                                              \
        return m_##name;                                                                           \
    }                                                                                              \
    void set##Name(Type value)                                                                     \
    {                                                                                              \
        m_##name = std::move(value);                                                               \
        Q_EMIT name##Changed();                                                                    \
    }                                                                                              \
    Q_SIGNAL void name##Changed();                                                                 \
                                                                                                   \
private:                                                                                           \
    Type m_##name{};
