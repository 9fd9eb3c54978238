#include "engines/on_device_services.h"
#include "fakes/fake_clock.h"
#include "fakes/scripted_engines.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

struct Outcome
{
    std::optional<QString> text;
    QString failure;
    bool wasCancelled = false;
};

QString textOf(const QString &text)
{
    return text;
}

QString textOf(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes);
}

template <typename Result>
QCoro::Task<void> keep(QCoro::Task<Result> task, std::shared_ptr<Outcome> outcome)
{
    try {
        const Result result = co_await task;
        outcome->text = textOf(result);
    } catch (const CancellationError &) {
        outcome->wasCancelled = true;
    } catch (const std::exception &error) {
        outcome->failure = errorDescription(error);
    }
}

class AppleIntelligenceServiceTest : public ::testing::Test
{
protected:
    std::shared_ptr<ScriptedOnDeviceModel> model = std::make_shared<ScriptedOnDeviceModel>();
    AppleIntelligenceService service{model};

    Outcome ask(OnDeviceTextRequest request, std::stop_token stop = {})
    {
        const auto outcome = std::make_shared<Outcome>();
        static_cast<void>(keep(service.generateText(std::move(request), stop), outcome));
        turnEventLoop();
        return *outcome;
    }
};

TEST_F(AppleIntelligenceServiceTest, promptGoesUnchangedWithItsOptions)
{
    ask({u"  prompt "_s, u" instructions\n"_s, u"general"_s});
    ASSERT_EQ(model->prompts.size(), 1);
    EXPECT_EQ(model->prompts.first().prompt, u"  prompt "_s);
    EXPECT_EQ(model->prompts.first().instructions, u"instructions"_s);
    EXPECT_EQ(model->prompts.first().temperature, 0.2);
    EXPECT_EQ(model->prompts.first().maximumResponseTokens, 2048);
}

TEST_F(AppleIntelligenceServiceTest, blankInstructionsMakeASessionWithoutAny)
{
    ask({u"p"_s, u" \n"_s, u"general"_s});
    EXPECT_EQ(model->prompts.first().instructions, std::nullopt);
}

TEST_F(AppleIntelligenceServiceTest, onlyTheExactWordSelectsContentTagging)
{
    ask({u"p"_s, {}, u"contentTagging"_s});
    ask({u"p"_s, {}, u"contenttagging"_s});
    EXPECT_EQ(model->prompts.at(0).useCase, OnDeviceUseCase::ContentTagging);
    EXPECT_EQ(model->prompts.at(1).useCase, OnDeviceUseCase::General);
}

TEST_F(AppleIntelligenceServiceTest, availabilityIsAskedOfTheChosenUseCase)
{
    model->contentTagging = OnDeviceAvailability::ModelNotReady;
    EXPECT_EQ(ask({u"p"_s, {}, u"contentTagging"_s}).failure,
        u"Apple Intelligence is unavailable: Model assets are not ready yet"_s);
    EXPECT_EQ(ask({u"p"_s, {}, u"general"_s}).text, u"answer"_s);
}

TEST_F(AppleIntelligenceServiceTest, answerIsTrimmed)
{
    model->content = u"\n answer \n"_s;
    EXPECT_EQ(ask({u"p"_s, {}, {}}).text, u"answer"_s);
}

TEST_F(AppleIntelligenceServiceTest, answerOfBlanksFails)
{
    model->content = u" \n "_s;
    EXPECT_EQ(ask({u"p"_s, {}, {}}).failure, u"Apple Intelligence returned an empty response."_s);
}

TEST_F(AppleIntelligenceServiceTest, failureOfTheModelPassesUnchanged)
{
    model->failure = std::make_exception_ptr(UserFacingError(u"guardrail"_s));
    EXPECT_EQ(ask({u"p"_s, {}, {}}).failure, u"guardrail"_s);
}

TEST_F(AppleIntelligenceServiceTest, stoppedCallAsksNothing)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_TRUE(ask({u"p"_s, {}, {}}, stop.get_token()).wasCancelled);
    EXPECT_TRUE(model->prompts.isEmpty());
}

struct AvailabilityRow
{
    OnDeviceAvailability availability;
    const char16_t *status;
    const char16_t *error;
};

class AvailabilityTest
    : public AppleIntelligenceServiceTest
    , public ::testing::WithParamInterface<AvailabilityRow>
{
};

TEST_P(AvailabilityTest, settingsAndFailedRunWordItDifferently)
{
    EXPECT_EQ(
        availabilityStatusText(GetParam().availability), QString::fromUtf16(GetParam().status));
    EXPECT_EQ(availabilityErrorText(GetParam().availability), QString::fromUtf16(GetParam().error));
    model->general = GetParam().availability;
    const Outcome outcome = ask({u"p"_s, {}, {}});
    if (GetParam().availability != OnDeviceAvailability::Available) {
        EXPECT_EQ(outcome.failure,
            u"Apple Intelligence is unavailable: "_s + QString::fromUtf16(GetParam().error));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryAvailability, AvailabilityTest,
    ::testing::Values(AvailabilityRow{OnDeviceAvailability::Available, u"Ready on this Mac",
                          u"Ready on this Mac"},
        AvailabilityRow{OnDeviceAvailability::DeviceNotEligible, u"Device is not eligible",
            u"Device is not eligible"},
        AvailabilityRow{OnDeviceAvailability::NotEnabled,
            u"Enable Apple Intelligence in system settings",
            u"Apple Intelligence is turned off in system settings"},
        AvailabilityRow{OnDeviceAvailability::ModelNotReady, u"Model assets are still preparing",
            u"Model assets are not ready yet"},
        AvailabilityRow{OnDeviceAvailability::Unknown, u"Unknown reason", u"Unknown reason"}));

TEST(AppleIntelligenceServiceErrors, haveTheirSentences)
{
    using Error = AppleIntelligenceServiceError;
    EXPECT_EQ(Error::unavailable(u"why"_s).message(), u"Apple Intelligence is unavailable: why"_s);
    EXPECT_EQ(Error::frameworkUnavailable().message(),
        u"Foundation Models framework is not available in this build."_s);
    EXPECT_EQ(
        Error::unsupportedOS().message(), u"Apple Intelligence requires macOS 26 or later."_s);
    EXPECT_EQ(
        Error::emptyResponse().message(), u"Apple Intelligence returned an empty response."_s);
}

TEST(AbsentOnDeviceModel, isNeverEligibleAndAnswersNothing)
{
    const auto model = absentOnDeviceModel();
    EXPECT_EQ(
        model->availability(OnDeviceUseCase::General), OnDeviceAvailability::DeviceNotEligible);
    const auto outcome = std::make_shared<Outcome>();
    static_cast<void>(keep(model->respond({}, {}), outcome));
    EXPECT_EQ(outcome->failure, u"Apple Intelligence is unavailable: Device is not eligible"_s);
}

TEST(AppleImageService, refusesEveryPromptAndAsksForOneWhereItIsBlank)
{
    AppleImageService service;
    const auto refused = std::make_shared<Outcome>();
    static_cast<void>(keep(service.generateImage(u"a cat"_s, {}), refused));
    EXPECT_EQ(refused->failure,
        u"Image Playground generation is not available in this build configuration."_s);
    const auto blank = std::make_shared<Outcome>();
    static_cast<void>(keep(service.generateImage(u" \n"_s, {}), blank));
    EXPECT_EQ(blank->failure, u"Provide a prompt to generate an image."_s);
}

} // namespace
} // namespace velarc
