#pragma once

// Follows the desktop's settings, live.

#include "ui/appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

namespace velarc {

// Reads colour scheme, animations and text size from the desktop's settings portal and keeps
// `appearance` as they are. Where the desktop names no colour scheme, the application's palette
// decides. Never blocks; an answer that does not come changes nothing.
//
// Main thread only; `appearance` must outlive it.
class DesktopAppearance final : public QObject
{
    Q_OBJECT

public:
    explicit DesktopAppearance(Appearance &appearance,
        const QDBusConnection &bus = QDBusConnection::sessionBus(), QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void noteChange(const QDBusMessage &message);

private:
    // What the portal calls the colour schemes.
    enum class Scheme
    {
        NoPreference = 0,
        Dark = 1,
        Light = 2
    };

    void ask(const QDBusConnection &bus, const QString &space, const QString &key);
    void take(const QString &space, const QString &key, const QVariant &value);
    void applyScheme();

    Appearance &m_appearance;
    Scheme m_scheme = Scheme::NoPreference;
};

} // namespace velarc
