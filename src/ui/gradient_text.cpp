#include "ui/gradient_text.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace velarc {

GradientText::GradientText(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(this, &GradientText::lookChanged, this, &GradientText::measure);
}

QFont GradientText::font() const
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(m_pixelSize);
    font.setWeight(QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, m_letterSpacing);
    return font;
}

void GradientText::measure()
{
    const QFontMetricsF metrics(font());
    setImplicitSize(std::ceil(metrics.horizontalAdvance(m_text)), std::ceil(metrics.height()));
    update();
}

void GradientText::paint(QPainter *painter)
{
    const QFontMetricsF metrics(font());
    QLinearGradient gradient(0, 0, width(), 0);
    gradient.setColorAt(0, m_leading);
    gradient.setColorAt(1, m_trailing);
    painter->setFont(font());
    painter->setPen(QPen(gradient, 1));
    painter->drawText(QPointF(0, metrics.ascent()), m_text);
}

} // namespace velarc
