#pragma once

// A request to the desktop's portal, whose answer comes as a signal.

#ifndef Q_MOC_RUN // moc does not read all of what that includes
#include "base/async.h"
#endif

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

namespace velarc {

struct PortalAnswer
{
    uint response = 2; // 0 granted, 1 the user refused, 2 ended in some other way
    QVariantMap results;
};

// Lives for one request. Main thread only.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    explicit PortalRequest(const QDBusConnection &bus);
    ~PortalRequest() override;

    // The value of the option "handle_token" of the call.
    [[nodiscard]] const QString &token() const { return m_token; }

    // Calls a method of the portal; done() fires once `answer` is there. Without an answer the
    // portal has none to give: it refused the call, went, or is not there.
    void call(const QDBusMessage &message);
    [[nodiscard]] Wakeup &done() { return m_done; }
    [[nodiscard]] const std::optional<PortalAnswer> &answer() const { return m_answer; }

    // Takes the dialog away, and done() fires without an answer.
    void close();

private Q_SLOTS:
    void takeResponse(const QDBusMessage &message);

private:
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QString m_token;
    QString m_path; // of the request object
    Wakeup m_done;
    std::optional<PortalAnswer> m_answer;

    void follow(const QString &path);
    void takeReply(const QDBusMessage &reply);
};

} // namespace velarc
