#pragma once

// Document services that answer as a test says.

#include "base/async.h"
#include "base/errors.h"
#include "intake/document_services.h"

#include <QList>

#include <memory>

namespace velarc {

class ScriptedPdfTexts final : public PdfTextReading
{
public:
    PdfText answer;
    QList<QByteArray> asked;

    [[nodiscard]] QCoro::Task<PdfText> read(QByteArray pdf, std::stop_token) override
    {
        asked.append(pdf);
        const PdfText given = answer;
        co_return given;
    }
};

class ScriptedDrawings final : public SvgRasterizing
{
public:
    QByteArray answer = "picture";
    QByteArray unreadable = "no drawing"; // what fails
    std::shared_ptr<Wakeup> hold; // while set, a drawing waits for it
    QList<QByteArray> asked;
    QList<QSize> sizes;

    [[nodiscard]] QCoro::Task<QByteArray> rasterize(
        QByteArray svg, QSize size, std::stop_token) override
    {
        asked.append(svg);
        sizes.append(size);
        const auto held = hold;
        const QByteArray given = answer;
        const bool fails = svg == unreadable;
        if (held) {
            co_await *held;
        }
        if (fails) {
            throw UserFacingError(QStringLiteral("Failed to render SVG: it is none"));
        }
        co_return given;
    }
};

} // namespace velarc
