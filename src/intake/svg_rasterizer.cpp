#include "intake/svg_rasterizer.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QString reasonOf(const DocumentOutcome &outcome)
{
    switch (outcome.end) {
    case DocumentEnd::Done:
        return u"No image returned."_s;
    case DocumentEnd::Failed:
        return outcome.message.isEmpty() ? u"The drawing needs more than is allowed."_s
                                         : outcome.message;
    case DocumentEnd::CutByBound:
        return u"The drawing takes too long."_s;
    case DocumentEnd::NotStarted:
        return u"The document helper could not be started."_s;
    }
    Q_UNREACHABLE();
}

QCoro::Task<QByteArray> render(std::shared_ptr<DocumentProcess> process,
    std::chrono::milliseconds bound, QByteArray svg, QSize size, std::stop_token stop)
{
    if (svg.isEmpty()) {
        throw SVGRasterizerError::invalidSVGData();
    }
    DocumentJob job{{u"svg-png"_s, u"--width"_s, QString::number(size.width()), u"--height"_s,
                        QString::number(size.height())},
        std::move(svg), {bound}};
    const DocumentOutcome outcome = co_await process->run(std::move(job), stop);
    if (outcome.end != DocumentEnd::Done || outcome.output.isEmpty()) {
        throw SVGRasterizerError::renderFailed(reasonOf(outcome));
    }
    co_return QByteArray(outcome.output);
}

} // namespace

SVGRasterizerError SVGRasterizerError::renderFailed(const QString &reason)
{
    return SVGRasterizerError(u"Failed to render SVG: "_s + reason);
}

SVGRasterizerError SVGRasterizerError::webKitUnavailable()
{
    return SVGRasterizerError(u"SVG rendering is unavailable on this platform."_s);
}

SVGRasterizerError SVGRasterizerError::invalidSVGData()
{
    return SVGRasterizerError(u"The SVG data is invalid."_s);
}

SVGRasterizerError SVGRasterizerError::encodingFailed()
{
    return SVGRasterizerError(u"Failed to encode SVG preview as PNG."_s);
}

SVGRasterizer::SVGRasterizer(QString helper, std::chrono::milliseconds bound)
    : m_process(std::make_shared<DocumentProcess>(std::move(helper))), m_bound(bound)
{
}

QCoro::Task<QByteArray> SVGRasterizer::rasterize(QByteArray svg, QSize size, std::stop_token stop)
{
    return render(m_process, m_bound, std::move(svg), size, std::move(stop));
}

} // namespace velarc
