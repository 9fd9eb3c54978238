#pragma once

// Follows the desktop's settings, live.

#include "ui/appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace velarc {

// Reads colour scheme, animations and text size from the desktop's settings portal and keeps
// `appearance` as they are. Where the desktop names no colour scheme, the application's palette
// decides. Never blocks. Until the desktop has told its scheme, or has not in a second, things look
// as they did last: a window that is remembered dark does not flash.
//
// Main thread only; `appearance` must outlive it.
class DesktopAppearance final : public QObject
{
    Q_OBJECT

public:
    // `wasDark` is how it looked last; where nothing is known of that, the palette decides.
    explicit DesktopAppearance(Appearance &appearance, std::optional<bool> wasDark = {},
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
    void takeAnswer(const QString &space, const QString &key, const QDBusMessage &answer);
    void take(const QString &space, const QString &key, const QVariant &value);
    void applyScheme();

    Appearance &m_appearance;
    std::optional<bool> m_wasDark; // forgotten once the desktop has told
    Scheme m_scheme = Scheme::NoPreference;
};

} // namespace velarc
