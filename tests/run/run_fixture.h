#pragma once

#include "fakes/scripted_seams.h"
#include "records/run_errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// A pipeline over scripted seams, and the words to steer it.
class RunPipelineTest : public ::testing::Test
{
protected:
    ScriptedRun run;
    AIAction action = testAction(u"Sort Things"_s);

    AppState &state() { return *run.state; }
    RunPipeline &pipeline() { return *run.pipeline; }

    void startOn(const QString &text)
    {
        state().setQuickInput(text);
        pipeline().startRun(action, SmartInput{});
    }

    // Through as many step pauses as there are; everything that is not gated happens.
    void letRunGoOn()
    {
        constexpr int kMorePausesThanARunHas = 8;
        for (int pause = 0; pause < kMorePausesThanARunHas; ++pause) {
            turnEventLoop();
            run.clock->advance(90ms);
        }
        turnEventLoop();
    }

    // Through one step pause.
    void letOneStepPass()
    {
        turnEventLoop();
        run.clock->advance(90ms);
        turnEventLoop();
    }

    [[nodiscard]] QString step()
    {
        const auto *processing = std::get_if<EngineProcessing>(&state().engineState());
        return processing == nullptr ? QString() : processing->step;
    }

    [[nodiscard]] std::optional<EngineError> shownError()
    {
        const auto *error = std::get_if<EngineError>(&state().engineState());
        return error == nullptr ? std::nullopt : std::optional(*error);
    }

    [[nodiscard]] std::optional<EngineResult> shownResult()
    {
        const auto *result = std::get_if<EngineResult>(&state().engineState());
        return result == nullptr ? std::nullopt : std::optional(*result);
    }

    [[nodiscard]] QString shownText()
    {
        const auto result = shownResult();
        return result ? payloadText(result->payload).value_or(QString()) : QString();
    }

    [[nodiscard]] QString note() { return state().statusNote().value_or(QString()); }

    [[nodiscard]] bool showsReadyCanvas()
    {
        return std::holds_alternative<EngineReady>(state().engineState())
            && state().homePhase() == HomePhase::Input;
    }
};

inline InputAttachment imageNamed(const QString &name)
{
    InputAttachment attachment;
    attachment.id = QUuid::createUuid();
    attachment.filename = name;
    attachment.mimeType = u"image/png"_s;
    attachment.bytes = QByteArrayLiteral("png");
    return attachment;
}

} // namespace velarc
