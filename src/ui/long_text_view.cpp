#include "ui/long_text_view.h"

#include <QPainter>
#include <QQuickPaintedItem>
#include <QQuickWindow>

#include <cmath>

namespace velarc {

namespace {

// The window reaches that far beyond what is seen, so that most steps of scrolling draw nothing.
constexpr qreal kWindowStep = 512;
constexpr qsizetype kMostSpoken = 20'000;

} // namespace

// The part of a text that is drawn. It is as large as what is in view, not as the text.
class TextWindow final : public QQuickPaintedItem
{
public:
    explicit TextWindow(LongTextView &owner) : QQuickPaintedItem(&owner), m_owner(owner) {}

    void paint(QPainter *painter) override
    {
        painter->translate(0, -y());
        m_owner.paintWindow(*painter, {0, y(), width(), height()});
    }

private:
    LongTextView &m_owner;
};

LongTextView::LongTextView(QQuickItem *parent) : QQuickItem(parent), m_window(new TextWindow(*this))
{
    m_layout.setFont(m_font, m_lineHeightFactor);
}

LongTextView::~LongTextView() = default;

// What changes the layout changes the height, and whether the limit cuts.
void LongTextView::relayOut(const std::function<void()> &change)
{
    const bool wasCut = isCut();
    change();
    setImplicitHeight(m_layout.height());
    m_inView = {};
    if (m_watched) {
        m_watched->update();
    }
    if (wasCut != isCut()) {
        Q_EMIT isCutChanged();
    }
}

void LongTextView::setText(const QString &text)
{
    if (text != this->text()) {
        changeText(text);
    }
}

void LongTextView::changeText(const QString &text)
{
    relayOut([&] { m_layout.setText(text); });
    Q_EMIT textChanged();
    Q_EMIT spokenTextChanged();
}

void LongTextView::setFont(const QFont &font)
{
    if (font != m_font) {
        m_font = font;
        relayOut([&] { m_layout.setFont(m_font, m_lineHeightFactor); });
        Q_EMIT fontChanged();
    }
}

void LongTextView::setLineHeightFactor(qreal factor)
{
    if (factor != m_lineHeightFactor) {
        m_lineHeightFactor = factor;
        relayOut([&] { m_layout.setFont(m_font, m_lineHeightFactor); });
        Q_EMIT fontChanged();
    }
}

void LongTextView::setLineLimit(int lines)
{
    if (lines != m_lineLimit) {
        m_lineLimit = lines;
        relayOut([&] { m_layout.setLineLimit(lines); });
        Q_EMIT lineLimitChanged();
    }
}

void LongTextView::setColor(const QColor &color)
{
    m_colors.text = color;
    m_window->update();
    Q_EMIT colorsChanged();
}

void LongTextView::setSelectionColor(const QColor &color)
{
    m_colors.selection = color;
    m_window->update();
    Q_EMIT colorsChanged();
}

void LongTextView::setSelectedTextColor(const QColor &color)
{
    m_colors.selectedText = color;
    m_window->update();
    Q_EMIT colorsChanged();
}

void LongTextView::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    if (now.width() != before.width()) {
        relayOut([&] { m_layout.setWidth(now.width()); });
    }
}

// A frame is drawn whenever anything above this item moves, so that is when to look.
void LongTextView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change != ItemSceneChange || data.window == m_watched) {
        return;
    }
    if (m_watched) {
        disconnect(m_watched, nullptr, this, nullptr);
    }
    m_watched = data.window;
    if (m_watched) {
        connect(m_watched, &QQuickWindow::afterAnimating, this, &LongTextView::followView);
    }
}

QRectF LongTextView::visiblePart() const
{
    QRectF part = boundingRect();
    for (QQuickItem *above = parentItem(); above != nullptr; above = above->parentItem()) {
        if (above->clip() || above->parentItem() == nullptr) {
            part = part.intersected(mapRectFromItem(above, above->boundingRect()));
        }
    }
    return part;
}

void LongTextView::followView()
{
    const QRectF part = isVisible() ? visiblePart() : QRectF();
    if (part.isEmpty()) {
        return;
    }
    const qreal top = std::floor(part.top() / kWindowStep) * kWindowStep;
    const qreal bottom = std::min(height(), std::ceil(part.bottom() / kWindowStep) * kWindowStep);
    const QRectF inView(0, top, width(), bottom - top);
    if (inView == m_inView) {
        return;
    }
    m_inView = inView;
    const qreal moved = m_layout.layOut(top, bottom);
    setImplicitHeight(m_layout.height());
    m_window->setPosition({0, top});
    m_window->setSize(inView.size());
    m_window->update();
    if (moved != 0) {
        scrollBy(moved);
    }
    Q_EMIT laidOut();
    if (text().size() > kMostSpoken) {
        Q_EMIT spokenTextChanged();
    }
}

void LongTextView::paintWindow(QPainter &painter, const QRectF &area) const
{
    m_layout.paint(painter, area, m_selection, m_colors);
}

QString LongTextView::spokenText() const
{
    if (text().size() <= kMostSpoken) {
        return text();
    }
    const TextSelection part = m_layout.partInView();
    return text().sliced(part.start, std::min(part.end - part.start, kMostSpoken));
}

QQuickItem *LongTextView::scroller() const
{
    QQuickItem *above = parentItem();
    while (above != nullptr && !above->inherits("QQuickFlickable")) {
        above = above->parentItem();
    }
    return above;
}

void LongTextView::scrollBy(qreal distance)
{
    if (QQuickItem *flickable = scroller()) {
        const qreal end = flickable->property("contentHeight").toReal() - flickable->height();
        const qreal at = flickable->property("contentY").toReal() + distance;
        flickable->setProperty("contentY", std::clamp<qreal>(at, 0, std::max<qreal>(0, end)));
    }
}

void LongTextView::reveal(qsizetype position)
{
    QQuickItem *flickable = scroller();
    if (flickable == nullptr) {
        return;
    }
    const QRectF caret = mapRectToItem(flickable, m_layout.caretAt(position));
    if (caret.top() < 0) {
        scrollBy(caret.top());
    } else if (caret.bottom() > flickable->height()) {
        scrollBy(caret.bottom() - flickable->height());
    }
}

void LongTextView::showSelection(const TextSelection &selection)
{
    if (!(selection == m_selection)) {
        m_selection = selection;
        m_window->update();
    }
}

} // namespace velarc
