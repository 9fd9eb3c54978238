#include "engines/on_device_model.h"

#include "engines/on_device_services.h"

namespace velarc {

namespace {

class AbsentModel final : public OnDeviceModel
{
public:
    [[nodiscard]] OnDeviceAvailability availability(OnDeviceUseCase) const override
    {
        return OnDeviceAvailability::DeviceNotEligible;
    }

    [[nodiscard]] QCoro::Task<QString> respond(OnDevicePrompt, std::stop_token) override
    {
        throw AppleIntelligenceServiceError::unavailable(
            availabilityErrorText(OnDeviceAvailability::DeviceNotEligible));
        co_return QString();
    }
};

} // namespace

std::shared_ptr<OnDeviceModel> absentOnDeviceModel()
{
    return std::make_shared<AbsentModel>();
}

} // namespace velarc
