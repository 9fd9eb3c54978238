#pragma once

// The on-device engines: text through the desktop's model, and images, which it does not make.

#include "base/errors.h"
#include "engines/engine_services.h"
#include "engines/on_device_model.h"

namespace velarc {

class AppleIntelligenceServiceError final : public UserFacingError
{
public:
    [[nodiscard]] static AppleIntelligenceServiceError unavailable(const QString &reason);
    [[nodiscard]] static AppleIntelligenceServiceError frameworkUnavailable();
    [[nodiscard]] static AppleIntelligenceServiceError unsupportedOS();
    [[nodiscard]] static AppleIntelligenceServiceError emptyResponse();

private:
    using UserFacingError::UserFacingError;
};

class AppleImageServiceError final : public UserFacingError
{
public:
    [[nodiscard]] static AppleImageServiceError unavailable(QString text);

private:
    using UserFacingError::UserFacingError;
};

// Why the model can or cannot run, as the settings screen and as a failed run put it.
[[nodiscard]] QString availabilityStatusText(OnDeviceAvailability availability);
[[nodiscard]] QString availabilityErrorText(OnDeviceAvailability availability);

class AppleIntelligenceService final : public AppleIntelligenceServing
{
public:
    explicit AppleIntelligenceService(std::shared_ptr<OnDeviceModel> model);
    [[nodiscard]] QCoro::Task<QString> generateText(
        OnDeviceTextRequest request, std::stop_token stop) override;

private:
    std::shared_ptr<OnDeviceModel> m_model;
};

class AppleImageService final : public AppleImageServing
{
public:
    // Always fails: a blank prompt is asked for, and every other one refused.
    [[nodiscard]] QCoro::Task<QByteArray> generateImage(
        QString prompt, std::stop_token stop) override;
};

} // namespace velarc
