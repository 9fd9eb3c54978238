#pragma once

// A short text filled with a gradient from its leading to its trailing edge.

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>

namespace velarc {

class GradientText : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY lookChanged)
    Q_PROPERTY(int pixelSize MEMBER m_pixelSize NOTIFY lookChanged)
    Q_PROPERTY(qreal letterSpacing MEMBER m_letterSpacing NOTIFY lookChanged)
    Q_PROPERTY(QColor leading MEMBER m_leading NOTIFY lookChanged)
    Q_PROPERTY(QColor trailing MEMBER m_trailing NOTIFY lookChanged)

public:
    explicit GradientText(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    QString m_text;
    int m_pixelSize = 18;
    qreal m_letterSpacing = 0;
    QColor m_leading;
    QColor m_trailing;

    [[nodiscard]] QFont font() const;
    void measure();
};

} // namespace velarc
