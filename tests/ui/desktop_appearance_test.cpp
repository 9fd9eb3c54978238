// Light or dark, text size and motion, as a desktop's settings portal tells them.

#include "support/wait_until.h"
#include "ui/desktop_appearance.h"

#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QPalette>
#include <QtNumeric>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kPortal = u"org.freedesktop.portal.Desktop"_s;
const QString kSettings = u"org.freedesktop.portal.Settings"_s;
const QString kAppearance = u"org.freedesktop.appearance"_s;
const QString kInterface = u"org.gnome.desktop.interface"_s;
constexpr uint kNoPreference = 0;
constexpr uint kDark = 1;
constexpr uint kLight = 2;

class SettingsPortal final : public QDBusVirtualObject
{
public:
    std::map<QString, QVariant> values; // by the key
    int questions = 0;
    bool isSilent = false;

    SettingsPortal()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s))
    {
        if (!m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath)
            || !m_bus.registerService(kPortal)) {
            throw std::runtime_error("somebody else has the name");
        }
    }

    ~SettingsPortal() override
    {
        m_bus.unregisterService(kPortal);
        QDBusConnection::disconnectFromBus(u"portal"_s);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        ++questions;
        const auto found = values.find(message.arguments().value(1).toString());
        if (isSilent) {
            return true;
        }
        m_bus.send(found == values.end()
                ? message.createErrorReply(QDBusError::InvalidArgs, u"no such setting"_s)
                : message.createReply(wrapped(wrapped(found->second))));
        return true;
    }

    void change(const QString &space, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            u"/org/freedesktop/portal/desktop"_s, kSettings, u"SettingChanged"_s);
        signal.setArguments({space, key, wrapped(value)});
        m_bus.send(signal);
    }

private:
    QDBusConnection m_bus;

    static QVariant wrapped(const QVariant &value)
    {
        return QVariant::fromValue(QDBusVariant(value));
    }
};

class DesktopAppearanceTest : public ::testing::Test
{
protected:
    Appearance appearance;
    std::unique_ptr<SettingsPortal> portal = std::make_unique<SettingsPortal>();
    std::unique_ptr<DesktopAppearance> desktop;

    ~DesktopAppearanceTest() override { usePalette(Qt::white, Qt::black); }

    void follow(std::optional<bool> wasDark = {})
    {
        desktop = std::make_unique<DesktopAppearance>(appearance, wasDark);
    }

    static void usePalette(const QColor &ground, const QColor &text)
    {
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }

    [[nodiscard]] bool becomesDark()
    {
        return waitUntil([this] { return appearance.isDark(); });
    }
    [[nodiscard]] bool becomesLight()
    {
        return waitUntil([this] { return !appearance.isDark(); });
    }
    // Every question has its answer, and the answers are here.
    [[nodiscard]] bool hasAsked()
    {
        const bool isAsked = waitUntil([this] { return portal->questions >= 4; });
        portal->change(kInterface, u"text-scaling-factor"_s, 2.5); // goes behind the answers
        return isAsked && waitUntil([this] { return appearance.textScale() == 2.5; });
    }
};

TEST_F(DesktopAppearanceTest, theDesktopsSchemeIsTaken)
{
    portal->values[u"color-scheme"_s] = kDark;
    follow();
    EXPECT_FALSE(appearance.isDark()) << "it asks without waiting";
    EXPECT_TRUE(becomesDark());
}

TEST_F(DesktopAppearanceTest, aChangeOfTheSchemeIsFollowedLive)
{
    follow();
    ASSERT_TRUE(hasAsked());
    portal->change(kAppearance, u"color-scheme"_s, kDark);
    EXPECT_TRUE(becomesDark());
    portal->change(kAppearance, u"color-scheme"_s, kLight);
    EXPECT_TRUE(becomesLight());
}

TEST_F(DesktopAppearanceTest, whereNoSchemeIsPreferredThePaletteDecidesLive)
{
    portal->values[u"color-scheme"_s] = kNoPreference;
    usePalette(Qt::black, Qt::white);
    follow();
    EXPECT_TRUE(appearance.isDark());
    ASSERT_TRUE(hasAsked());
    usePalette(Qt::white, Qt::black);
    EXPECT_FALSE(appearance.isDark());
}

TEST_F(DesktopAppearanceTest, aSchemeOfTheDesktopGoesBeforeThePalette)
{
    portal->values[u"color-scheme"_s] = kLight;
    follow(true);
    ASSERT_TRUE(becomesLight());
    usePalette(Qt::black, Qt::white);
    EXPECT_FALSE(appearance.isDark());
}

TEST_F(DesktopAppearanceTest, untilTheDesktopHasToldItLooksAsItDidLast)
{
    portal->isSilent = true;
    follow(true);
    EXPECT_TRUE(appearance.isDark());
    usePalette(Qt::white, Qt::black);
    EXPECT_TRUE(appearance.isDark());
}

TEST_F(DesktopAppearanceTest, aDesktopThatCannotTellLeavesItToThePalette)
{
    follow(true);
    EXPECT_TRUE(becomesLight()) << "the palette is light";
    portal.reset();
    follow(true);
    EXPECT_TRUE(appearance.isDark());
    EXPECT_TRUE(becomesLight());
}

TEST_F(DesktopAppearanceTest, textSizeAndMotionAreFollowed)
{
    portal->values[u"text-scaling-factor"_s] = 1.5;
    portal->values[u"enable-animations"_s] = false;
    follow();
    EXPECT_TRUE(waitUntil([this] { return appearance.textScale() == 1.5; }));
    EXPECT_TRUE(waitUntil([this] { return appearance.reducesMotion(); }));
    portal->change(kInterface, u"enable-animations"_s, true);
    EXPECT_TRUE(waitUntil([this] { return !appearance.reducesMotion(); }));
    portal->change(kAppearance, u"reduced-motion"_s, 1U);
    EXPECT_TRUE(waitUntil([this] { return appearance.reducesMotion(); }));
}

TEST_F(DesktopAppearanceTest, aTextSizeBeyondReasonIsBoundedAndNonsenseIsNone)
{
    follow();
    ASSERT_TRUE(hasAsked());
    portal->change(kInterface, u"text-scaling-factor"_s, 1e9);
    EXPECT_TRUE(waitUntil([this] { return appearance.textScale() == 3; }));
    for (const QVariant &nonsense :
        {QVariant(u"nonsense"_s), QVariant(0.0), QVariant(-1.0), QVariant(qQNaN())}) {
        portal->change(kInterface, u"text-scaling-factor"_s, nonsense);
    }
    portal->change(kAppearance, u"reduced-motion"_s, 1U);
    EXPECT_TRUE(waitUntil([this] { return appearance.reducesMotion(); })) << "told behind them";
    EXPECT_EQ(appearance.textScale(), 3);
}

} // namespace

} // namespace velarc
