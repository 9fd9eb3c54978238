// The road of one call: stops, overlaps, and what of it runs where.

#include "base/async.h"
#include "engines/anthropic_service.h"
#include "engines/cloud_call.h"
#include "engines/gemini_service.h"
#include "engines/openai_service.h"

#include <QElapsedTimer>
#include <QTimer>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr const char *kReply = R"({"output_text":"Hello"})";

// Generous: an overloaded machine may take its time.
constexpr qint64 kLongestGapMs = 100;

struct CloudCallTest : CloudTest
{
    std::unique_ptr<OpenAIService> service = std::make_unique<OpenAIService>(transport, clock);

    QCoro::Task<GenerationResult> call(const QString &prompt, std::stop_token stop = {}) const
    {
        return service->generateText(textRequest(prompt), 2048, std::move(stop));
    }

    void turnUntilWaiting(std::size_t requests)
    {
        while (transport->gate.waiting() < requests) {
            turnEventLoop();
        }
    }
};

// A reply of so many bytes, most of them one text.
QByteArray largeReply(qsizetype bytes)
{
    return R"({"output_text":")" + QByteArray("lorem \\n \\u00e9 ipsum ").repeated(bytes / 21)
        + R"("})";
}

} // namespace

TEST_F(CloudCallTest, aStoppedCallSendsNothing)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(outcomeOf(call(u"Hi"_s, stop.get_token())), CancellationError);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(CloudCallTest, aStopDuringTheTransferEndsTheCall)
{
    transport->gate.close();
    transport->answer(200, kReply);
    std::stop_source stop;
    auto task = call(u"Hi"_s, stop.get_token());
    turnUntilWaiting(1);
    stop.request_stop();
    EXPECT_FALSE(task.isReady());
    EXPECT_THROW(outcomeOf(std::move(task)), CancellationError);
    EXPECT_EQ(transport->requests.size(), 1);
}

TEST_F(CloudCallTest, aStopWhileTheReplyIsReadEndsTheCall)
{
    transport->gate.close();
    transport->answer(200, largeReply(20'000'000));
    std::stop_source stop;
    auto task = call(u"Hi"_s, stop.get_token());
    turnUntilWaiting(1);
    transport->gate.open();
    EXPECT_FALSE(task.isReady()); // reading goes on elsewhere
    stop.request_stop();
    EXPECT_THROW(outcomeOf(std::move(task)), CancellationError);
}

TEST_F(CloudCallTest, theServiceIsFreeWhileACallWaitsForTheNetwork)
{
    transport->gate.close();
    transport->answer(200, kReply);
    auto first = call(u"one"_s);
    turnUntilWaiting(1);
    auto second = call(u"two"_s);
    turnUntilWaiting(2);
    EXPECT_TRUE(transport->requests[0].body.contains("one"));
    EXPECT_TRUE(transport->requests[1].body.contains("two"));
    transport->gate.open();
    EXPECT_TRUE(outcomeOf(std::move(second)).debugInfo->requestText.contains(u"two"_s));
    EXPECT_TRUE(outcomeOf(std::move(first)).debugInfo->requestText.contains(u"one"_s));
}

TEST_F(CloudCallTest, aCallEndsAfterItsServiceIsGone)
{
    transport->gate.close();
    transport->answer(200, kReply);
    auto task = call(u"Hi"_s);
    service.reset();
    turnUntilWaiting(1);
    transport->gate.open();
    EXPECT_EQ(textOf(outcomeOf(std::move(task))), u"Hello"_s);
}

TEST_F(CloudCallTest, aDroppedCallGoesOnWithoutHarm)
{
    transport->gate.close();
    transport->answer(200, kReply);
    {
        [[maybe_unused]] auto task = call(u"Hi"_s);
        turnUntilWaiting(1);
    }
    service.reset();
    transport->gate.open();
    turnEventLoop();
    EXPECT_EQ(transport->requests.size(), 1);
}

TEST_F(CloudCallTest, aFailedCallIsNotRepeated)
{
    transport->answer(503, "try again");
    EXPECT_EQ(failureOf<OpenAIFailure>(call(u"Hi"_s)).failure, OpenAIFailure::RequestFailed);
    EXPECT_EQ(transport->requests.size(), 1);
}

TEST_F(CloudCallTest, theMainThreadTurnsWhileLargeBodiesAreBuiltAndRead)
{
    transport->answer(200, largeReply(20'000'000));
    CloudTextRequest request = textRequest(u"Look"_s, {},
        QList<InputAttachment>(3,
            attachmentOf(InputAttachmentKind::Image, u"p.png"_s, u"image/png"_s,
                QByteArray(5'000'000, 'x'))));
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    int ticks = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        longestGap = std::max(longestGap, sinceTick.restart());
        ++ticks;
    });
    timer.start(std::chrono::milliseconds(1));
    sinceTick.start();
    const GenerationResult result = outcomeOf(service->generateText(std::move(request), 2048, {}));
    longestGap = std::max(longestGap, sinceTick.elapsed());
    EXPECT_GT(textOf(result).size(), 10'000'000);
    RecordProperty("longestGapMs", static_cast<int>(longestGap));
    EXPECT_GT(ticks, 1);
    EXPECT_LT(longestGap, kLongestGapMs);
}

} // namespace velarc
