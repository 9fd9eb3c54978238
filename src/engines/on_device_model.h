#pragma once

// The desktop's on-device language model, as an interface.

#include <QCoroTask>
#include <QString>

#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

enum class OnDeviceAvailability
{
    Available,
    DeviceNotEligible,
    NotEnabled,
    ModelNotReady,
    Unknown,
};

enum class OnDeviceUseCase
{
    General,
    ContentTagging
};

struct OnDevicePrompt
{
    OnDeviceUseCase useCase = OnDeviceUseCase::General;
    std::optional<QString> instructions;
    QString prompt;
    double temperature = 0;
    int maximumResponseTokens = 0;
};

// Main thread only. One conversation a call; nothing carries over.
class OnDeviceModel
{
public:
    virtual ~OnDeviceModel() = default;

    [[nodiscard]] virtual OnDeviceAvailability availability(OnDeviceUseCase useCase) const = 0;

    // Stop: as every engine. Errors: the model's own.
    [[nodiscard]] virtual QCoro::Task<QString> respond(
        OnDevicePrompt prompt, std::stop_token stop) = 0;
};

// The model of a desktop that has none: never eligible, and a request fails.
[[nodiscard]] std::shared_ptr<OnDeviceModel> absentOnDeviceModel();

} // namespace velarc
