// A cloud run that ends early, at each of its waits.

#include "cloud_run_fixture.h"

#include "fakes/notify_counter.h"

namespace velarc {
namespace {

// Where a run on a cloud engine can be waiting, in order.
enum class Wait
{
    KeyRead,
    BuildingTheBody,
    Connecting,
    Uploading,
    SilentServer,
    HalfAReply,
    DecodingTheReply,
};

constexpr qsizetype kPictureBytes = 12'000'000;
constexpr qsizetype kReplyBytes = 12'000'000;

class CloudCancelTest
    : public CloudRunTest
    , public ::testing::WithParamInterface<Wait>
{
protected:
    std::shared_ptr<CountingTransport> counting;

    CloudCancelTest()
    {
        counting = std::make_shared<CountingTransport>(std::make_shared<HttpClient>());
        launchCloud(counting);
    }

    void TearDown() override
    {
        counting.reset();
        CloudRunTest::TearDown();
    }

    // Starts a run and turns the event loop until it is there.
    void bringTo(Wait wait)
    {
        prepare(wait);
        start(wait == Wait::BuildingTheBody || wait == Wait::Uploading
                ? PreparedRunInput{u"look"_s, {picture()}}
                : PreparedRunInput{u"hello"_s, {}});
        ASSERT_TRUE(goOnUntil([&] { return isAt(wait); }));
        ASSERT_EQ(viewModel->homePhase(), HomePhase::Processing);
    }

    [[nodiscard]] static bool hasSentSomething(Wait wait) { return wait > Wait::Connecting; }

    // Once nothing of the run is left, nothing of it is at the server either.
    void expectNothingGoesOn(Wait wait)
    {
        ASSERT_TRUE(waitUntil([this] { return scope->running() == 0; }));
        if (wait < Wait::DecodingTheReply) {
            EXPECT_TRUE(waitUntil([this] { return server->connectionsOpen() == 0; }));
        }
        if (wait < Wait::Connecting) {
            EXPECT_EQ(server->connectionsAccepted(), 0);
        }
        if (wait == Wait::Uploading) {
            EXPECT_FALSE(server->requests().last().isWhole);
        }
        EXPECT_EQ(server->requests().size(), hasSentSomething(wait) ? 1 : 0);
    }

private:
    void prepare(Wait wait)
    {
        if (wait == Wait::KeyRead) {
            keys->gate.close();
        } else if (wait == Wait::Connecting) {
            server->answer(endingAt(Stage::Accepted, Ending::Open));
        } else if (wait == Wait::SilentServer) {
            server->answer(ScriptedAnswer());
        } else if (wait == Wait::HalfAReply) {
            server->answer({.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{\"output"});
        } else if (wait == Wait::DecodingTheReply) {
            server->answer(
                reply(200, R"({"output_text":")" + QByteArray(kReplyBytes, 'a') + R"("})"));
        }
    }

    [[nodiscard]] bool isAt(Wait wait) const
    {
        const QList<ReceivedRequest> requests = server->requests();
        const bool hasWholeRequest = !requests.isEmpty() && requests.last().isWhole;
        switch (wait) {
        case Wait::KeyRead:
            return keys->gate.waiting() == 1;
        case Wait::BuildingTheBody:
            return shownStep() == u"Generating with OpenAI"_s && server->connectionsAccepted() == 0;
        case Wait::Connecting:
            return server->connectionsAccepted() == 1;
        case Wait::Uploading:
            return !requests.isEmpty() && !requests.last().isWhole;
        case Wait::SilentServer:
        case Wait::HalfAReply:
            return hasWholeRequest;
        case Wait::DecodingTheReply:
            return counting->replies() == 1;
        }
        return false;
    }

    [[nodiscard]] static InputAttachment picture()
    {
        InputAttachment attachment;
        attachment.filename = u"p.png"_s;
        attachment.mimeType = u"image/png"_s;
        attachment.bytes = QByteArray(kPictureBytes, 'p');
        return attachment;
    }
};

TEST_P(CloudCancelTest, cancelledRunLeavesNoRequestAndWritesNothing)
{
    bringTo(GetParam());
    viewModel->cancelRun();
    const NotifyCounter later(*viewModel);
    expectNothingGoesOn(GetParam());
    keys->gate.open();
    clock->advance(1s);
    turnEventLoop();
    EXPECT_EQ(later.count(), 0);
    EXPECT_EQ(note(), u"Canceled."_s);
    EXPECT_EQ(viewModel->engineState(), EngineState(EngineReady()));
    EXPECT_EQ(storedUsage(), QStringList());
}

TEST_P(CloudCancelTest, runOfAProgramThatEndsLeavesNoRequest)
{
    bringTo(GetParam());
    viewModel.reset();
    counting.reset();
    expectNothingGoesOn(GetParam());
}

TEST_P(CloudCancelTest, programEndsWithoutWaitingForItsRun)
{
    bringTo(GetParam());
    EXPECT_TRUE(scope->finish());
    expectNothingGoesOn(GetParam());
    EXPECT_EQ(storedUsage(), QStringList());
}

TEST_P(CloudCancelTest, runThatWasSupersededNeverShowsItsResult)
{
    bringTo(GetParam());
    QStringList shown;
    QObject::connect(viewModel.get(), &AppState::engineStateChanged, viewModel.get(), [&] {
        if (std::holds_alternative<EngineResult>(viewModel->engineState())) {
            shown.append(shownText().left(20));
        }
    });
    server->answer(reply(200, R"({"output_text":"the second"})"));
    start();
    keys->gate.open();
    ASSERT_TRUE(goOnUntil([this] { return viewModel->homePhase() == HomePhase::Output; }));
    ASSERT_TRUE(waitUntil([this] { return scope->running() == 0; }));
    EXPECT_EQ(shown, QStringList(u"the second"_s));
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
    EXPECT_EQ(server->requests().size(), hasSentSomething(GetParam()) ? 2 : 1);
    EXPECT_TRUE(waitUntil([this] { return server->connectionsOpen() <= 1; }));
}

std::string nameOf(const ::testing::TestParamInfo<Wait> &info)
{
    constexpr std::array kNames{"KeyRead", "BuildingTheBody", "Connecting", "Uploading",
        "SilentServer", "HalfAReply", "DecodingTheReply"};
    return kNames.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(AtEachWait, CloudCancelTest,
    ::testing::Values(Wait::KeyRead, Wait::BuildingTheBody, Wait::Connecting, Wait::Uploading,
        Wait::SilentServer, Wait::HalfAReply, Wait::DecodingTheReply),
    &nameOf);

} // namespace
} // namespace velarc
