#pragma once

// A text of any length, drawn. Only the part of it that is in view is laid out and drawn, so that
// megabytes cost no more than a page.

#include "ui/long_text_layout.h"

#include <QPointer>
#include <QQuickItem>

#include <functional>

namespace velarc {

class TextWindow;

// As wide as it is told, as tall as its text. It finds by itself what of it is in view: what the
// clipping items above it let through.
class LongTextView : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(qreal lineHeight READ lineHeightFactor WRITE setLineHeightFactor NOTIFY fontChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorsChanged)
    Q_PROPERTY(
        QColor selectionColor READ selectionColor WRITE setSelectionColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor selectedTextColor READ selectedTextColor WRITE setSelectedTextColor NOTIFY
            colorsChanged)
    // Of lines that are shown; 0 for all.
    Q_PROPERTY(int lineLimit READ lineLimit WRITE setLineLimit NOTIFY lineLimitChanged)
    Q_PROPERTY(bool isCut READ isCut NOTIFY isCutChanged) // by the limit
    Q_PROPERTY(qreal linePitch READ linePitch NOTIFY fontChanged) // logical pixels
    // The whole text if it is short, else the part that is in view.
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY spokenTextChanged)

public:
    explicit LongTextView(QQuickItem *parent = nullptr);
    ~LongTextView() override;

    [[nodiscard]] QString text() const { return m_layout.text(); }
    virtual void setText(const QString &text);
    [[nodiscard]] QFont font() const { return m_font; }
    void setFont(const QFont &font);
    [[nodiscard]] qreal lineHeightFactor() const { return m_lineHeightFactor; }
    void setLineHeightFactor(qreal factor);
    [[nodiscard]] QColor color() const { return m_colors.text; }
    void setColor(const QColor &color);
    [[nodiscard]] QColor selectionColor() const { return m_colors.selection; }
    void setSelectionColor(const QColor &color);
    [[nodiscard]] QColor selectedTextColor() const { return m_colors.selectedText; }
    void setSelectedTextColor(const QColor &color);
    [[nodiscard]] int lineLimit() const { return m_lineLimit; }
    void setLineLimit(int lines);
    [[nodiscard]] bool isCut() const { return m_layout.isCut(); }
    [[nodiscard]] qreal linePitch() const { return m_layout.lineHeight(); }
    [[nodiscard]] QString spokenText() const;

    // What TextWindow shows.
    void paintWindow(QPainter &painter, const QRectF &area) const;

Q_SIGNALS:
    void textChanged();
    void fontChanged();
    void colorsChanged();
    void lineLimitChanged();
    void isCutChanged();
    void spokenTextChanged();
    void laidOut(); // lines have moved, or others are in view

protected:
    [[nodiscard]] LongTextLayout &layout() { return m_layout; }
    [[nodiscard]] const LongTextLayout &layout() const { return m_layout; }
    void showSelection(const TextSelection &selection);
    void changeText(const QString &text);

    // What scrolls this item, if anything does: a Flickable.
    [[nodiscard]] QQuickItem *scroller() const;
    void scrollBy(qreal distance);
    void reveal(qsizetype position);

    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    LongTextLayout m_layout;
    QFont m_font;
    qreal m_lineHeightFactor = 1;
    TextColors m_colors;
    TextSelection m_selection;
    int m_lineLimit = 0;
    QRectF m_inView;
    TextWindow *m_window = nullptr;
    QPointer<QQuickWindow> m_watched;

    void relayOut(const std::function<void()> &change);
    void followView();
    [[nodiscard]] QRectF visiblePart() const;
};

} // namespace velarc
