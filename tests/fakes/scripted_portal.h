#pragma once

// The desktop's portal for mails and file dialogs on the session bus, steered by a test.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <optional>

namespace velarc {

class ScriptedPortal final : public QDBusVirtualObject
{
public:
    enum class Answer
    {
        Opens,
        IsCancelled,
        Fails,
        RefusesTheCall,
        NeverComes,
        GoesAway,
    };

    Answer answer = Answer::Opens;
    std::optional<unsigned> version = 3; // none for a portal without mails
    bool usesOwnHandles = false; // as old portals do
    QList<QVariantMap> drafts; // the options of the calls
    QVariantMap results; // of a request that is granted
    QString method; // of the last call
    QString title; // of the last file dialog
    int withdrawn = 0; // requests closed by the caller

    ScriptedPortal();
    ~ScriptedPortal() override;

    // Answers the last request, of which that answer NeverComes by itself: 0 opened, 1 cancelled.
    void respond(unsigned code);

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QDBusConnection m_bus;
    QString m_path; // of the last request
    QString m_caller;

    void tellVersion(const QDBusMessage &message);
    void begin(const QDBusMessage &message);
};

} // namespace velarc
