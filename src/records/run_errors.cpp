#include "records/run_errors.h"

namespace velarc {

ProviderConnectionRequiredError::ProviderConnectionRequiredError(AIProvider provider)
    : UserFacingError(label(provider) + QStringLiteral(" is not connected yet."))
    , m_provider(provider)
{
}

UnsupportedOutputProviderError::UnsupportedOutputProviderError(
    AIProvider provider, OutputFormat format)
    : UserFacingError(label(provider) + QStringLiteral(" does not support ") + label(format)
        + QStringLiteral(" output."))
{
}

PDFExportServiceError PDFExportServiceError::contextUnavailable()
{
    return PDFExportServiceError(QStringLiteral("Could not initialize PDF context."));
}

PDFExportServiceError PDFExportServiceError::writeFailed()
{
    return PDFExportServiceError(QStringLiteral("Could not write the generated PDF file."));
}

} // namespace velarc
