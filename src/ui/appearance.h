#pragma once

// How the desktop wants programs to look.

#include <QObject>
#include <QtQmlIntegration>

namespace velarc {

// Main thread only. Whoever follows the desktop writes it; the theme reads it.
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.appearance is the one")
    Q_PROPERTY(bool isDark READ isDark NOTIFY isDarkChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)
    Q_PROPERTY(qreal textScale READ textScale NOTIFY textScaleChanged)

public:
    using QObject::QObject;

    [[nodiscard]] bool isDark() const { return m_isDark; }
    void setIsDark(bool isDark);

    [[nodiscard]] bool reducesMotion() const { return m_reducesMotion; }
    void setReducesMotion(bool reducesMotion);

    // How much larger than usual text is wanted: from 0.5 to 3.
    [[nodiscard]] qreal textScale() const { return m_textScale; }
    void setTextScale(qreal textScale);

Q_SIGNALS:
    void isDarkChanged();
    void reducesMotionChanged();
    void textScaleChanged();

private:
    bool m_isDark = false;
    bool m_reducesMotion = false;
    qreal m_textScale = 1;
};

} // namespace velarc
