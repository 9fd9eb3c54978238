// The colours of both appearances: those that are fixed, and whether text can be read on its
// ground.

#include "ui_world.h"

#include <QColor>
#include <QQmlComponent>

#include <cmath>

namespace velarc {

namespace {

// Of the sRGB colour, between 0 and 1.
double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &left, const QColor &right)
{
    const auto [darker, lighter] = std::minmax({luminance(left), luminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

// What is seen where `upper` lies over an opaque ground.
QColor over(const QColor &upper, const QColor &ground)
{
    const auto mix = [&](double above, double below) {
        return static_cast<float>(above * upper.alphaF() + below * (1 - upper.alphaF()));
    };
    return QColor::fromRgbF(mix(upper.redF(), ground.redF()), mix(upper.greenF(), ground.greenF()),
        mix(upper.blueF(), ground.blueF()));
}

QColor white(double opacity)
{
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(opacity));
}

QColor accent(double opacity)
{
    QColor color(0x63, 0x66, 0xF1);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

struct Token
{
    const char *name;
    QColor light;
    QColor dark;
};

const Token kTokens[] = {
    {"accent", 0xFF6366F1, 0xFF6366F1},
    {"inputBorderDropTargeted", 0xFF6366F1, 0xFF6366F1},
    {"inputBorder", 0xFFE5E7EB, white(0.08)},
    {"dropGlow", accent(0.2), accent(0.35)},
    {"wordmarkBadgeText", 0xFFF9FAFB, 0xFFF9FAFB},
    {"editorBackground", 0xFFFFFFFF, 0xFF111827},
    {"warningFill", 0xFFFEF3C7, 0xFFFEF3C7},
    {"warningStroke", 0xFFF59E0B, 0xFFF59E0B},
    {"warningText", 0xFF7C2D12, 0xFF7C2D12},
    {"warningAction", 0xFFD97706, 0xFFD97706},
    {"attachmentChip", 0xFFEEF2FF, 0xFFEEF2FF},
    {"success", 0xFF10B981, 0xFF10B981},
    {"issue", 0xFFEF4444, 0xFFEF4444},
};

struct Gradient
{
    const char *name;
    QList<QColor> light;
    QList<QColor> dark;
};

const Gradient kGradients[] = {
    {"canvasGradient", {0xFFFAFAFA, 0xFFF5F3FF, 0xFFFAFAFA}, {0xFF09090B, 0xFF0C0A1A, 0xFF09090B}},
    {"wordmarkGradient", {0xFF312E81, 0xFF4F46E5}, {0xFFA5B4FC, 0xFF818CF8}},
    {"wordmarkBadgeGradient", {0xFFE86546, 0xFFCF5134}, {0xFFF06A4D, 0xFFC94D33}},
};

// Text and all grounds that it stands on.
struct Pair
{
    const char *text;
    QStringList grounds;
};

const QStringList kSurfaces{u"sidebarGround"_s, u"cardTop"_s, u"cardBottom"_s, u"sheetGround"_s,
    u"popupGround"_s, u"well"_s, u"editorBackground"_s};

const Pair kPairs[] = {
    {"text", kSurfaces},
    {"secondaryText", kSurfaces},
    {"placeholderText", {u"editorBackground"_s, u"well"_s, u"control"_s, u"cardBottom"_s}},
    {"accentText", kSurfaces},
    {"successText", {u"cardTop"_s, u"cardBottom"_s, u"sheetGround"_s, u"popupGround"_s}},
    {"issueText", {u"cardTop"_s, u"cardBottom"_s, u"sheetGround"_s, u"popupGround"_s}},
    {"chipText", {u"attachmentChip"_s}},
    {"warningText", {u"warningFill"_s}},
    {"textOnWarning", {u"warningAction"_s}},
    {"text", {u"control"_s, u"controlHover"_s, u"controlPressed"_s, u"hover"_s, u"selection"_s}},
    {"accentText", {u"control"_s, u"controlHover"_s, u"controlPressed"_s}},
};

class ThemeTest : public UiWorld
{
protected:
    std::unique_ptr<QObject> theme;

    ThemeTest()
    {
        openWindow();
        QQmlComponent component(engine.get());
        component.setData(
            "import QtQml\nimport Velarc\nQtObject { property var theme: Theme }", {});
        theme.reset(component.create());
    }

    [[nodiscard]] QVariant value(const QString &name)
    {
        return theme->property("theme").value<QObject *>()->property(name.toLatin1());
    }

    [[nodiscard]] QColor color(const QString &name) { return value(name).value<QColor>(); }

    [[nodiscard]] QList<QColor> stops(const char *name)
    {
        QList<QColor> colors;
        for (const QVariant &stop : value(QString::fromLatin1(name)).toList()) {
            colors.append(stop.value<QColor>());
        }
        return colors;
    }

    // What is seen of the ground, which may let through what is under it.
    [[nodiscard]] QColor ground(const QString &name)
    {
        return over(color(name), color(u"cardBottom"_s));
    }
};

TEST_F(ThemeTest, productsColoursAreWhatTheyAre)
{
    for (const Look look : {Look::Light, Look::Dark}) {
        setLook(look);
        for (const Token &token : kTokens) {
            const QColor wanted = look == Look::Dark ? token.dark : token.light;
            EXPECT_EQ(color(QString::fromLatin1(token.name)).rgba(), wanted.rgba()) << token.name;
        }
        for (const Gradient &gradient : kGradients) {
            EXPECT_EQ(stops(gradient.name), look == Look::Dark ? gradient.dark : gradient.light)
                << gradient.name;
        }
    }
    EXPECT_EQ(value(u"dropGlowRadius"_s).toInt(), 22);
}

TEST_F(ThemeTest, textCanBeReadOnEveryGround)
{
    for (const Look look : {Look::Light, Look::Dark}) {
        setLook(look);
        for (const Pair &pair : kPairs) {
            for (const QString &name : pair.grounds) {
                EXPECT_GE(contrast(color(QString::fromLatin1(pair.text)), ground(name)), 4.5)
                    << pair.text << " on " << name.toStdString()
                    << (look == Look::Dark ? " (dark)" : " (light)");
            }
        }
    }
}

TEST_F(ThemeTest, textCanBeReadAllOverTheCanvas)
{
    for (const Look look : {Look::Light, Look::Dark}) {
        setLook(look);
        for (const QColor &stop : stops("canvasGradient")) {
            EXPECT_GE(contrast(color(u"text"_s), stop), 4.5);
            EXPECT_GE(contrast(color(u"secondaryText"_s), stop), 4.5);
            EXPECT_GE(contrast(color(u"accentText"_s), stop), 4.5);
        }
    }
}

TEST_F(ThemeTest, pillCanBeReadInEachStateOfTheEngine)
{
    for (const Look look : {Look::Light, Look::Dark}) {
        setLook(look);
        for (const QString &dot : {u"accent"_s, u"warningStroke"_s, u"success"_s, u"issue"_s}) {
            QColor tint = color(dot);
            tint.setAlphaF(0.16F);
            for (const QColor &stop : stops("canvasGradient")) {
                EXPECT_GE(contrast(color(u"text"_s), over(tint, stop)), 4.5) << dot.toStdString();
            }
        }
    }
}

TEST_F(ThemeTest, focusRingStandsOutFromEveryGround)
{
    for (const Look look : {Look::Light, Look::Dark}) {
        setLook(look);
        for (const QString &name : kSurfaces) {
            EXPECT_GE(contrast(color(u"focusRing"_s), ground(name)), 3) << name.toStdString();
        }
    }
}

// White on the fixed accent has 4.47 to 1.
TEST_F(ThemeTest, labelOfAProminentCommandIsAsReadableAsTheFixedAccentAllows)
{
    EXPECT_EQ(color(u"textOnAccent"_s), QColor(Qt::white));
    EXPECT_GE(contrast(Qt::white, color(u"accent"_s)), 4.4);
}

} // namespace

} // namespace velarc
