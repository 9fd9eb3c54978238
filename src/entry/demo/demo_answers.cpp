#include "entry/demo/demo_answers.h"

#include "engines/openai_service.h"

#include <QBuffer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kPage = 1'500; // characters
constexpr qsizetype kMegabyte = 1'000'000;

QString tale(qsizetype length)
{
    const QString paragraph =
        u"The harbour ferry was late again. The crew blamed the tide, the tide had no comment, and "
        "the gulls had seen it coming. Nobody minded much: there was tea on the upper deck, and a "
        "child counted the buoys out loud, from one to forty and then from one again.\n\n"_s;
    return paragraph.repeated(length / paragraph.size() + 1);
}

QByteArray picture()
{
    constexpr int kEdge = 1024;
    QImage image(kEdge, kEdge, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, kEdge);
    sky.setColorAt(0, QColor(u"#312E81"_s));
    sky.setColorAt(0.6, QColor(u"#F06A4D"_s));
    sky.setColorAt(1, QColor(u"#FDE68A"_s));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(u"#FEF3C7"_s));
    painter.drawEllipse(QPointF(660, 560), 90, 90);
    painter.setBrush(QColor(u"#1E1B4B"_s));
    painter.drawRect(0, 650, kEdge, kEdge - 650);
    painter.setBrush(QColor(u"#F9FAFB"_s));
    painter.drawPolygon(QPolygonF({{260, 640}, {420, 640}, {400, 690}, {280, 690}}));
    painter.drawPolygon(QPolygonF({{335, 630}, {335, 480}, {430, 630}}));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QString longMessage()
{
    return u"OpenAI API error (500): The server had an error while processing your request. It was "
           "in the middle of a sentence about a ferry when a connection to its own memory was "
           "closed, opened, and closed again; what it had written by then is gone. You can retry "
           "the request, or write to the people who look after the server and tell them the "
           "number of the request, which is req_0123456789abcdef0123456789abcdef. They will "
           "know what to do."_s;
}

ResultPayload payloadFor(const QString &model, const QString &prompt)
{
    if (model == u"slow"_s || model == u"page"_s) {
        return TextPayload{tale(kPage)};
    }
    if (model == u"megabyte"_s) {
        return TextPayload{tale(kMegabyte)};
    }
    if (model == u"megabytes"_s) {
        return TextPayload{tale(5 * kMegabyte)};
    }
    if (model == u"picture"_s) {
        return ImagePayload{picture()};
    }
    if (model == u"brokenPicture"_s) {
        return ImagePayload{picture().first(kPage)};
    }
    if (model == u"fail"_s) {
        throw OpenAIServiceError(OpenAIFailure::RequestFailed, longMessage());
    }
    if (model == u"offline"_s) {
        throw OpenAIServiceError(OpenAIFailure::RequestFailed, u"Host api.openai.com not found"_s);
    }
    if (model == u"refuse"_s) {
        throw OpenAIServiceError(
            OpenAIFailure::RequestFailed, u"OpenAI API error (401): Incorrect API key provided."_s);
    }
    return TextPayload{prompt};
}

} // namespace

GenerationResult demoAnswer(AIProvider provider, const QString &model, const QString &prompt)
{
    GenerationResult result;
    result.payload = payloadFor(model, prompt);
    result.provider = provider;
    result.modelID = model;
    const QString answer = payloadText(result.payload).value_or(u"(a picture)"_s);
    constexpr qsizetype kCharactersPerToken = 4;
    result.usage = TokenUsage{prompt.size() / kCharactersPerToken,
        answer.size() / kCharactersPerToken, (prompt.size() + answer.size()) / kCharactersPerToken};
    result.debugInfo = GenerationDebugInfo{prompt, answer,
        {{u"Provider"_s, label(provider)}, {u"Model"_s, model}, {u"Endpoint"_s, QString()},
            {u"Characters"_s, QString::number(answer.size())}}};
    return result;
}

} // namespace velarc
