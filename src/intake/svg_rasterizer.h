#pragma once

// Drawings as pictures, made by the helper program.

#include "base/errors.h"
#include "intake/document_process.h"
#include "intake/document_services.h"

namespace velarc {

class SVGRasterizerError final : public UserFacingError
{
public:
    [[nodiscard]] static SVGRasterizerError renderFailed(const QString &reason);
    [[nodiscard]] static SVGRasterizerError webKitUnavailable();
    [[nodiscard]] static SVGRasterizerError invalidSVGData(); // no bytes at all
    [[nodiscard]] static SVGRasterizerError encodingFailed();

private:
    using UserFacingError::UserFacingError;
};

// Bytes that are no drawing give a blank white picture. A helper that is dead, missing or late is
// renderFailed.
class SVGRasterizer final : public SvgRasterizing
{
public:
    explicit SVGRasterizer(QString helper = documentHelperPath(),
        std::chrono::milliseconds bound = std::chrono::seconds(60));

    [[nodiscard]] QCoro::Task<QByteArray> rasterize(
        QByteArray svg, QSize size, std::stop_token stop) override;

private:
    std::shared_ptr<DocumentProcess> m_process;
    std::chrono::milliseconds m_bound;
};

} // namespace velarc
