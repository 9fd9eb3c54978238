// Every day of the demo's engines, good or bad, on the screen.

#include "ui_world.h"

#include "entry/demo/demo_engines.h"
#include "support/wait_until.h"

namespace velarc {

namespace {

class DemoScreensTest
    : public UiWorld
    , public ::testing::WithParamInterface<int>
{
protected:
    DemoScreensTest()
    {
        AppServices made = services();
        made.store = std::make_shared<const LocalStore>(domain, &demoActions);
        viewModel = std::make_unique<AppViewModel>(overDemoEngines(std::move(made)));
        openWindow();
    }

    ~DemoScreensTest() override { scope->finish(); }

    void select(const AIAction &action)
    {
        viewModel->library().selectAction(action.id);
        viewModel->setQuickInput(u"hello"_s);
        settle();
    }

    void letAnswerCome()
    {
        letRunGoOn();
        clock->advance(30s);
        letRunGoOn();
        settle();
    }
};

TEST_P(DemoScreensTest, runsFromTheButtonToItsOutputWithoutAWarning)
{
    const AIAction action = viewModel->actions().at(GetParam());
    select(action);
    click(u"Run"_s);
    EXPECT_TRUE(shows(u"Action: "_s + action.name));
    EXPECT_TRUE(shows(u"Cancel"_s));
    letAnswerCome();
    ASSERT_EQ(viewModel->homePhase(), HomePhase::Output);
    EXPECT_NE(shows(u"Result"_s), shows(u"Error"_s)) << "it is one of the two";
    EXPECT_TRUE(shows(u"Restart"_s));
    if (shows(u"Result"_s)) {
        click(u"Details"_s);
        click(u"Expand"_s);
    }
    setLook(Look::Dark);
    EXPECT_FALSE(picture().isNull());
    click(u"Back"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

INSTANTIATE_TEST_SUITE_P(
    EachAction, DemoScreensTest, ::testing::Range(0, static_cast<int>(demoActions().size())));

TEST_F(DemoScreensTest, eachKindOfDayCanBeHad)
{
    QStringList seen;
    for (const AIAction &action : viewModel->actions()) {
        select(action);
        viewModel->runSelectedAction();
        letAnswerCome();
        const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
        seen.append(result == nullptr                                   ? u"failure"_s
                : std::holds_alternative<ImagePayload>(result->payload) ? u"image"_s
                : std::holds_alternative<PdfPayload>(result->payload)   ? u"file"_s
                                                                        : u"text"_s);
    }
    for (const QString &kind : {u"text"_s, u"image"_s, u"file"_s, u"failure"_s}) {
        EXPECT_TRUE(seen.contains(kind)) << kind.toStdString();
    }
}

} // namespace

} // namespace velarc
