#pragma once

// Keys and values that outlive the process, shared by all programs of the user: the floor under
// LocalStore.
//
// A value is a document (bytes) or a boolean. Reads see what other processes wrote. No call throws,
// prints or reports a failure: what cannot be read is not there, what cannot be written is dropped.
// One thread.

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <variant>

namespace velarc {

// Stands for what no program of ours writes.
struct ForeignValue
{
    friend bool operator==(const ForeignValue &, const ForeignValue &) = default;
};

using DefaultsValue = std::variant<QByteArray, bool, ForeignValue>;

class DefaultsDomain
{
public:
    DefaultsDomain() = default;
    virtual ~DefaultsDomain() = default;
    DefaultsDomain(const DefaultsDomain &) = delete;
    DefaultsDomain &operator=(const DefaultsDomain &) = delete;

    // The document under `key`; none if anything else stands there.
    [[nodiscard]] std::optional<QByteArray> bytes(QByteArrayView key);
    void setBytes(QByteArrayView key, const QByteArray &document);

    // The boolean under `key`; false if none stands there.
    [[nodiscard]] bool boolean(QByteArrayView key);
    void setBoolean(QByteArrayView key, bool value);

    // Whether anything at all stands under `key`.
    [[nodiscard]] bool holds(QByteArrayView key);

    void remove(QByteArrayView key);

    // Writes `proposal` under `key` unless a document stands there by now that is another one than
    // the caller saw, in one step that no other process can come between. Gives the document that
    // stands there afterwards, so that of several processes that propose at once all get the
    // winner's; `proposal` itself where nothing could be written.
    [[nodiscard]] QByteArray settle(
        QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal);

protected:
    [[nodiscard]] virtual std::optional<DefaultsValue> read(QByteArrayView key) = 0;
    virtual void write(QByteArrayView key, const DefaultsValue &value) = 0;
    virtual void erase(QByteArrayView key) = 0;
    virtual void writeUnlessChanged(
        QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal) = 0;
};

// Whether a document stands under a key that is another one than somebody saw there.
[[nodiscard]] bool hasChanged(
    const std::optional<DefaultsValue> &standing, const std::optional<QByteArray> &seen);

} // namespace velarc
