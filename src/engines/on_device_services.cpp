#include "engines/on_device_services.h"

#include "base/async.h"
#include "base/text.h"

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr double kTemperature = 0.2;
constexpr int kMaximumResponseTokens = 2048;

struct AvailabilityRow
{
    OnDeviceAvailability availability;
    const char16_t *status;
    const char16_t *error;
};

constexpr std::array kAvailabilityTexts{
    AvailabilityRow{OnDeviceAvailability::Available, u"Ready on this Mac", u"Ready on this Mac"},
    AvailabilityRow{OnDeviceAvailability::DeviceNotEligible, u"Device is not eligible",
        u"Device is not eligible"},
    AvailabilityRow{OnDeviceAvailability::NotEnabled,
        u"Enable Apple Intelligence in system settings",
        u"Apple Intelligence is turned off in system settings"},
    AvailabilityRow{OnDeviceAvailability::ModelNotReady, u"Model assets are still preparing",
        u"Model assets are not ready yet"},
    AvailabilityRow{OnDeviceAvailability::Unknown, u"Unknown reason", u"Unknown reason"},
};

constexpr bool standsInEnumOrder()
{
    for (std::size_t index = 0; index < kAvailabilityTexts.size(); ++index) {
        if (static_cast<std::size_t>(kAvailabilityTexts[index].availability) != index) {
            return false;
        }
    }
    return true;
}
static_assert(standsInEnumOrder());

const AvailabilityRow &rowOf(OnDeviceAvailability availability)
{
    return kAvailabilityTexts.at(static_cast<std::size_t>(availability));
}

OnDevicePrompt promptFor(const OnDeviceTextRequest &request)
{
    OnDevicePrompt prompt;
    prompt.useCase = request.useCase == u"contentTagging"_s ? OnDeviceUseCase::ContentTagging
                                                            : OnDeviceUseCase::General;
    if (!isBlank(request.instructions)) {
        prompt.instructions = trimmed(request.instructions).toString();
    }
    prompt.prompt = request.prompt;
    prompt.temperature = kTemperature;
    prompt.maximumResponseTokens = kMaximumResponseTokens;
    return prompt;
}

QCoro::Task<QString> respond(
    std::shared_ptr<OnDeviceModel> model, OnDeviceTextRequest request, std::stop_token stop)
{
    throwIfStopped(stop);
    OnDevicePrompt prompt = promptFor(request);
    const OnDeviceAvailability availability = model->availability(prompt.useCase);
    if (availability != OnDeviceAvailability::Available) {
        throw AppleIntelligenceServiceError::unavailable(availabilityErrorText(availability));
    }
    const QString content = co_await model->respond(std::move(prompt), stop);
    const QString text = trimmed(content).toString();
    if (text.isEmpty()) {
        throw AppleIntelligenceServiceError::emptyResponse();
    }
    co_return text;
}

} // namespace

AppleIntelligenceServiceError AppleIntelligenceServiceError::unavailable(const QString &reason)
{
    return AppleIntelligenceServiceError(u"Apple Intelligence is unavailable: "_s + reason);
}

AppleIntelligenceServiceError AppleIntelligenceServiceError::frameworkUnavailable()
{
    return AppleIntelligenceServiceError(
        u"Foundation Models framework is not available in this build."_s);
}

AppleIntelligenceServiceError AppleIntelligenceServiceError::unsupportedOS()
{
    return AppleIntelligenceServiceError(u"Apple Intelligence requires macOS 26 or later."_s);
}

AppleIntelligenceServiceError AppleIntelligenceServiceError::emptyResponse()
{
    return AppleIntelligenceServiceError(u"Apple Intelligence returned an empty response."_s);
}

AppleImageServiceError AppleImageServiceError::unavailable(QString text)
{
    return AppleImageServiceError(std::move(text));
}

QString availabilityStatusText(OnDeviceAvailability availability)
{
    return QString::fromUtf16(rowOf(availability).status);
}

QString availabilityErrorText(OnDeviceAvailability availability)
{
    return QString::fromUtf16(rowOf(availability).error);
}

AppleIntelligenceService::AppleIntelligenceService(std::shared_ptr<OnDeviceModel> model)
    : m_model(std::move(model))
{
}

QCoro::Task<QString> AppleIntelligenceService::generateText(
    OnDeviceTextRequest request, std::stop_token stop)
{
    return respond(m_model, std::move(request), std::move(stop));
}

QCoro::Task<QByteArray> AppleImageService::generateImage(QString prompt, std::stop_token stop)
{
    throwIfStopped(stop);
    throw AppleImageServiceError::unavailable(isBlank(prompt)
            ? u"Provide a prompt to generate an image."_s
            : u"Image Playground generation is not available in this build configuration."_s);
    co_return QByteArray();
}

} // namespace velarc
