#pragma once

// A rounded rectangle with a gradient from top to bottom and a hairline, smooth at its corners on
// every renderer.

#include <QColor>
#include <QQuickPaintedItem>

namespace velarc {

class Surface : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER m_from NOTIFY lookChanged)
    Q_PROPERTY(QColor to MEMBER m_to NOTIFY lookChanged)
    Q_PROPERTY(QColor stroke MEMBER m_stroke NOTIFY lookChanged)
    Q_PROPERTY(qreal strokeWidth MEMBER m_strokeWidth NOTIFY lookChanged)
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY lookChanged)
    // From the leading to the trailing edge instead.
    Q_PROPERTY(bool sideways MEMBER m_sideways NOTIFY lookChanged)

public:
    explicit Surface(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    QColor m_from = Qt::transparent;
    QColor m_to = Qt::transparent;
    QColor m_stroke = Qt::transparent;
    qreal m_strokeWidth = 1;
    qreal m_radius = 0;
    bool m_sideways = false;
};

} // namespace velarc
