#include "ui/surface.h"

#include <QLinearGradient>
#include <QPainter>

namespace velarc {

Surface::Surface(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &Surface::lookChanged, this, [this] { update(); });
}

void Surface::paint(QPainter *painter)
{
    painter->setRenderHint(QPainter::Antialiasing);
    const bool hasStroke = m_strokeWidth > 0 && m_stroke.alpha() > 0;
    const qreal inset = hasStroke ? m_strokeWidth / 2 : 0;
    const QRectF shape = QRectF(0, 0, width(), height()).adjusted(inset, inset, -inset, -inset);
    QLinearGradient gradient(shape.topLeft(), m_sideways ? shape.topRight() : shape.bottomLeft());
    gradient.setColorAt(0, m_from);
    gradient.setColorAt(1, m_to);
    painter->setBrush(gradient);
    painter->setPen(hasStroke ? QPen(m_stroke, m_strokeWidth) : QPen(Qt::NoPen));
    painter->drawRoundedRect(shape, m_radius, m_radius);
}

} // namespace velarc
