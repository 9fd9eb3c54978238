#include "ui/image_providers.h"

#include <QPainter>
#include <QPainterPath>
#include <QQmlEngine>
#include <QSvgRenderer>

#include <algorithm>
#include <vector>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSymbolSize = 20;
constexpr int kLargestEdge = 512; // of a symbol, and of a glow's corner and blur together

QImage emptyPicture(QSize size)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QColor colorFrom(const QString &hexArgb)
{
    return QColor::fromString(u'#' + hexArgb);
}

// One running average along a line of alpha values, `stride` apart.
void blurLine(uchar *first, int count, qsizetype stride, int radius, std::vector<uchar> &line)
{
    line.resize(static_cast<std::size_t>(count));
    for (int at = 0; at < count; ++at) {
        line[static_cast<std::size_t>(at)] = first[at * stride];
    }
    const auto valueAt = [&](int at) {
        return at < 0 || at >= count ? 0 : int(line[static_cast<std::size_t>(at)]);
    };
    int sum = 0;
    for (int at = -radius; at <= radius; ++at) {
        sum += valueAt(at);
    }
    for (int at = 0; at < count; ++at) {
        first[at * stride] = static_cast<uchar>(sum / (2 * radius + 1));
        sum += valueAt(at + radius + 1) - valueAt(at - radius);
    }
}

// Three box blurs look like a round one.
void blurAlpha(QImage &alpha, int radius)
{
    constexpr int kPasses = 3;
    const int box = std::max(1, radius / kPasses);
    std::vector<uchar> line;
    for (int pass = 0; pass < kPasses; ++pass) {
        for (int y = 0; y < alpha.height(); ++y) {
            blurLine(alpha.scanLine(y), alpha.width(), 1, box, line);
        }
        for (int x = 0; x < alpha.width(); ++x) {
            blurLine(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), box, line);
        }
    }
}

QImage glow(const QColor &color, int corner, int blur)
{
    const int edge = 2 * (corner + blur) + 1;
    const QRectF shape(blur, blur, edge - 2 * blur, edge - 2 * blur);
    QImage alpha(edge, edge, QImage::Format_Alpha8);
    alpha.fill(Qt::transparent);
    {
        QPainter painter(&alpha);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(shape, corner, corner);
    }
    blurAlpha(alpha, blur);
    QImage picture = emptyPicture(alpha.size());
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawImage(0, 0, alpha);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(shape, corner, corner);
    return picture;
}

} // namespace

QImage IconProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QStringList parts = id.split(u'/');
    const QSize edge = requestedSize.isEmpty()
        ? QSize(kSymbolSize, kSymbolSize)
        : requestedSize.boundedTo({kLargestEdge, kLargestEdge});
    QImage picture = emptyPicture(edge);
    if (size != nullptr) {
        *size = edge;
    }
    QSvgRenderer drawing(u":/qt/qml/Velarc/icons/"_s + parts.value(0) + u".svg"_s);
    if (!drawing.isValid()) {
        return picture;
    }
    QPainter painter(&picture);
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), colorFrom(parts.value(1)));
    return picture;
}

QImage GlowProvider::requestImage(const QString &id, QSize *size, const QSize & /*requestedSize*/)
{
    const QStringList parts = id.split(u'/');
    const int corner = std::clamp(parts.value(1).toInt(), 0, kLargestEdge / 2);
    const int blur = std::clamp(parts.value(2).toInt(), 1, kLargestEdge / 2);
    QImage picture = glow(colorFrom(parts.value(0)), corner, blur);
    if (size != nullptr) {
        *size = picture.size();
    }
    return picture;
}

void addImageProviders(QQmlEngine &engine)
{
    engine.addImageProvider(u"icon"_s, new IconProvider);
    engine.addImageProvider(u"glow"_s, new GlowProvider);
}

} // namespace velarc
