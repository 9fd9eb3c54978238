#pragma once

// What other programs ask of the window, gathered: ten thousand calls at once cost no more than
// one.
//
// Main thread only.

#include "entry/bus_client.h"

#include <QObject>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace velarc {

// What came of an import.
struct ImportAnswer
{
    enum class Outcome
    {
        Imported,
        Refused,
    };

    Outcome outcome = Outcome::Imported;
    QString text; // a summary, or the sentence why not

    friend bool operator==(const ImportAnswer &, const ImportAnswer &) = default;
};
using TakeImportAnswer = std::function<void(const ImportAnswer &)>;

// What the window can be asked for. Each is called from the event loop, never inside a call of the
// bus.
struct WindowHandlers
{
    std::function<void(const ActivationContext &)> present; // show it, and bring it to the front
    std::function<void(const QUrl &)> openUrl;
    std::function<void(const QUuid &)> selectAction;
    std::function<void(const CopiedThing &)> copy; // at once: the caller is told when it is done
    // Takes actions over, and answers later.
    std::function<void(const QByteArray &, const TakeImportAnswer &)> import = nullptr;
};

// Addresses that mean the same are opened once a turn of the event loop, those of another scheme
// or host never; of several requests to come to the front and to select an action the latest
// stands.
class WindowRequests final : public QObject
{
    Q_OBJECT

public:
    explicit WindowRequests(WindowHandlers handlers) : m_handlers(std::move(handlers)) {}

    void activate(const ActivationContext &context);
    void open(const QStringList &addresses, const ActivationContext &context);
    void select(const QUuid &action, const ActivationContext &context);
    void copy(const CopiedThing &thing) { m_handlers.copy(thing); }
    void import(const QByteArray &json, const TakeImportAnswer &answer)
    {
        m_handlers.import(json, answer);
    }

    // Whether anybody has asked for the window yet.
    [[nodiscard]] bool wasAskedFor() const { return m_wasAskedFor; }

private:
    void present(const ActivationContext &context);
    void handleAll();

    WindowHandlers m_handlers;
    QList<QUrl> m_urls;
    std::optional<QUuid> m_action;
    ActivationContext m_context;
    bool m_isPosted = false;
    bool m_wasAskedFor = false;
};

} // namespace velarc
