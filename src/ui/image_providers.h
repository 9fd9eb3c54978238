#pragma once

// The pictures that the screens draw with: tinted symbols, and the glow around a card.

#include <QQuickImageProvider>

class QQmlEngine;

namespace velarc {

// "image://icon/FILE/AARRGGBB": the drawing icons/FILE.svg in one colour, in the size asked for.
// A drawing that is not there gives an empty picture.
class IconProvider final : public QQuickImageProvider
{
public:
    IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

// "image://glow/AARRGGBB/CORNER/BLUR": a blurred rounded rectangle with a hole of that shape, to be
// stretched as nine pieces: CORNER + BLUR pixels at each edge stay as they are.
class GlowProvider final : public QQuickImageProvider
{
public:
    GlowProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

// Gives the engine both providers.
void addImageProviders(QQmlEngine &engine);

} // namespace velarc
