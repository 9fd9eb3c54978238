#include "ui/desktop_appearance.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <array>
#include <chrono>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(1);

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kInterface = u"org.freedesktop.portal.Settings"_s;

struct Setting
{
    QStringView space;
    QStringView key;
};
constexpr Setting kScheme{u"org.freedesktop.appearance", u"color-scheme"};
constexpr Setting kReducedMotion{u"org.freedesktop.appearance", u"reduced-motion"};
constexpr Setting kAnimations{u"org.gnome.desktop.interface", u"enable-animations"};
constexpr Setting kTextScale{u"org.gnome.desktop.interface", u"text-scaling-factor"};
constexpr std::array kSettings{kScheme, kReducedMotion, kAnimations, kTextScale};

bool isSetting(const Setting &setting, const QString &space, const QString &key)
{
    return setting.space == space && setting.key == key;
}

// The portal wraps values in variants, older ones twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

bool paletteIsDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness()
        > palette.color(QPalette::Window).lightness();
}

} // namespace

DesktopAppearance::DesktopAppearance(Appearance &appearance, std::optional<bool> wasDark,
    const QDBusConnection &bus, QObject *parent)
    : QObject(parent), m_appearance(appearance), m_wasDark(wasDark)
{
    applyScheme();
    qGuiApp->installEventFilter(this);
    QDBusConnection connection = bus;
    connection.connect(
        kService, kPath, kInterface, u"SettingChanged"_s, this, SLOT(noteChange(QDBusMessage)));
    for (const Setting &setting : kSettings) {
        ask(bus, setting.space.toString(), setting.key.toString());
    }
}

bool DesktopAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange) {
        applyScheme();
    }
    return QObject::eventFilter(watched, event);
}

void DesktopAppearance::noteChange(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 3) {
        take(arguments.at(0).toString(), arguments.at(1).toString(), arguments.at(2));
    }
}

void DesktopAppearance::ask(const QDBusConnection &bus, const QString &space, const QString &key)
{
    QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, u"Read"_s);
    call.setArguments({space, key});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, kPatience.count()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, space, key] {
        takeAnswer(space, key, watcher->reply());
        watcher->deleteLater();
    });
}

void DesktopAppearance::takeAnswer(
    const QString &space, const QString &key, const QDBusMessage &answer)
{
    if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty()) {
        take(space, key, answer.arguments().constFirst());
    } else if (isSetting(kScheme, space, key)) {
        m_wasDark.reset(); // nobody will tell
        applyScheme();
    }
}

void DesktopAppearance::take(const QString &space, const QString &key, const QVariant &value)
{
    const QVariant plain = unwrapped(value);
    if (isSetting(kScheme, space, key)) {
        const uint scheme = plain.toUInt();
        m_wasDark.reset();
        m_scheme = scheme == 1 ? Scheme::Dark : scheme == 2 ? Scheme::Light : Scheme::NoPreference;
        applyScheme();
    } else if (isSetting(kReducedMotion, space, key)) {
        m_appearance.setReducesMotion(plain.toUInt() == 1);
    } else if (isSetting(kAnimations, space, key)) {
        m_appearance.setReducesMotion(!plain.toBool());
    } else if (isSetting(kTextScale, space, key)) {
        if (const double scale = plain.toDouble(); scale > 0) {
            m_appearance.setTextScale(scale);
        }
    }
}

void DesktopAppearance::applyScheme()
{
    const bool isDark =
        m_scheme == Scheme::NoPreference ? paletteIsDark() : m_scheme == Scheme::Dark;
    m_appearance.setIsDark(m_wasDark.value_or(isDark));
}

} // namespace velarc
