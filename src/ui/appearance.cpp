#include "ui/appearance.h"

#include <algorithm>

namespace velarc {

void Appearance::setIsDark(bool isDark)
{
    if (m_isDark != isDark) {
        m_isDark = isDark;
        Q_EMIT isDarkChanged();
    }
}

void Appearance::setReducesMotion(bool reducesMotion)
{
    if (m_reducesMotion != reducesMotion) {
        m_reducesMotion = reducesMotion;
        Q_EMIT reducesMotionChanged();
    }
}

void Appearance::setTextScale(qreal textScale)
{
    textScale = std::clamp(textScale, 0.5, 3.0);
    if (!qFuzzyCompare(m_textScale, textScale)) {
        m_textScale = textScale;
        Q_EMIT textScaleChanged();
    }
}

} // namespace velarc
