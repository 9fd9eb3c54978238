#include "entry/demo/demo_engines.h"
#include "support/app_world.h"

namespace velarc {

namespace {

// The program over the demo's engines.
class DemoTest : public AppWorld
{
protected:
    DemoTest()
    {
        AppServices made = services();
        made.store = std::make_shared<const LocalStore>(domain, &demoActions);
        viewModel = std::make_unique<AppViewModel>(overDemoEngines(std::move(made)));
    }

    ~DemoTest() override { scope->finish(); }

    void start(const QString &name)
    {
        viewModel->startRun(actionNamed(name), ExplicitInput{{u"hello"_s, {}}});
        letRunGoOn();
    }

    void run(const QString &name)
    {
        start(name);
        clock->advance(600ms);
        letRunGoOn();
    }

    [[nodiscard]] const ResultPayload *shown() const
    {
        const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
        return result == nullptr ? nullptr : &result->payload;
    }

    [[nodiscard]] QString shownText() const
    {
        const ResultPayload *payload = shown();
        return payload == nullptr ? u"no result"_s : payloadText(*payload).value_or(QString());
    }

    [[nodiscard]] EngineError shownError() const
    {
        const auto *error = std::get_if<EngineError>(&viewModel->engineState());
        return error == nullptr ? EngineError{u"no error"_s, {}} : *error;
    }
};

TEST_F(DemoTest, anEchoGivesTheInputBack)
{
    run(u"Echo the Input"_s);
    EXPECT_EQ(shownText(), u"hello"_s);
    ASSERT_TRUE(viewModel->latestRunDebugInfo());
}

TEST_F(DemoTest, aSlowAnswerTakesItsTimeAndCanBeCancelled)
{
    run(u"Answer Slowly"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Processing);
    viewModel->cancelRun();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
    start(u"Answer Slowly"_s);
    clock->advance(30s);
    letRunGoOn();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Output);
}

TEST_F(DemoTest, longTextsAreAsLongAsTheirActionsSay)
{
    run(u"Write 1 MB"_s);
    EXPECT_GE(shownText().size(), 1'000'000);
    run(u"Write 5 MB"_s);
    EXPECT_GE(shownText().size(), 5'000'000);
}

TEST_F(DemoTest, picturesAndPdfsAreMade)
{
    run(u"Draw an Image"_s);
    ASSERT_NE(shown(), nullptr);
    EXPECT_TRUE(std::holds_alternative<ImagePayload>(*shown()));
    run(u"Make a PDF"_s);
    ASSERT_NE(shown(), nullptr);
    EXPECT_TRUE(std::holds_alternative<PdfPayload>(*shown()));
}

TEST_F(DemoTest, failuresComeAsThoseOfRealEnginesDo)
{
    run(u"Fail with a Long Message"_s);
    EXPECT_EQ(shownError().message, u"Request failed for provider OpenAI."_s);
    EXPECT_GE(shownError().technical.value_or(QString()).size(), 400);
    run(u"Have the Key Refused"_s);
    EXPECT_TRUE(shownError().technical.value_or(QString()).contains(u"401"_s));
    run(u"Be Off the Network"_s);
    EXPECT_TRUE(shownError().technical.value_or(QString()).contains(u"not found"_s));
}

TEST_F(DemoTest, aMissingKeyIsOfferedAndCanBeGiven)
{
    run(u"Miss a Key"_s);
    EXPECT_EQ(shownError().message, u"Anthropic is not connected."_s);
    EXPECT_EQ(viewModel->suggestedConnectionProvider(), AIProvider::Anthropic);
}

TEST_F(DemoTest, everyActionOfTheDemoEndsInAnOutput)
{
    for (const AIAction &action : demoActions()) {
        start(action.name);
        clock->advance(30s);
        letRunGoOn();
        EXPECT_EQ(viewModel->homePhase(), HomePhase::Output) << action.name.toStdString();
    }
}

} // namespace

} // namespace velarc
