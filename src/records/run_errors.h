#pragma once

// The failures of a run that its one handler tells apart.

#include "actions/action.h"
#include "base/errors.h"

namespace velarc {

// A cloud engine without a key. The run offers to connect it.
class ProviderConnectionRequiredError final : public UserFacingError
{
public:
    explicit ProviderConnectionRequiredError(AIProvider provider);
    [[nodiscard]] AIProvider provider() const noexcept { return m_provider; }

private:
    AIProvider m_provider;
};

// An engine that cannot make the format asked for.
class UnsupportedOutputProviderError final : public UserFacingError
{
public:
    UnsupportedOutputProviderError(AIProvider provider, OutputFormat format);
};

// A failure of a system destination: of the calendar, of a compose window, or of what leads there.
class SystemActionError : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// A result that could not be written as a PDF.
class PDFExportServiceError final : public UserFacingError
{
public:
    [[nodiscard]] static PDFExportServiceError contextUnavailable();
    [[nodiscard]] static PDFExportServiceError writeFailed();

private:
    using UserFacingError::UserFacingError;
};

} // namespace velarc
