// What the cloud clients do off the main thread: building bodies, reading and showing replies.

#include "engines/cloud_text.h"
#include "engines/json_pretty.h"
#include "engines/openai_calls.h"

#include <benchmark/benchmark.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kPictureBytes = 5'000'000;
constexpr int kPictures = 3;

constexpr qsizetype kReplyBytes = 20'000'000;
constexpr int kKeys = 1'000'000;

// Bytes without a pattern, as packed pictures are.
QByteArray pictureBytes()
{
    QByteArray bytes(kPictureBytes, Qt::Uninitialized);
    unsigned state = 1;
    for (char &byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

CloudCall callWithPictures()
{
    InputAttachment picture;
    picture.mimeType = u"image/png"_s;
    picture.bytes = pictureBytes();
    CloudTextRequest request{u"Describe these."_s, u"gpt-5"_s, Secret("sk-bench-0123456789"),
        QList<InputAttachment>(kPictures, picture)};
    return responsesCall(QUrl(u"http://localhost"_s), std::move(request), 2048);
}

// A reply whose text takes so many bytes, with an escape a line.
QByteArray longReply()
{
    const QByteArray line =
        "The quick brown fox jumps over the lazy dog, caf\u00E9 by caf\u00E9.\\n";
    return R"({"id":"resp_1","status":"completed","output":[{"type":"message","content":[)"
           R"({"type":"output_text","text":")"
        + line.repeated(kReplyBytes / line.size()) + R"("}]}],"usage":{"input_tokens":1}})";
}

QByteArray replyOfManyKeys()
{
    QByteArray object = R"({"output_text":"Hello")";
    for (int index = 0; index < kKeys; ++index) {
        object += ",\"key" + QByteArray::number(index) + "\":" + QByteArray::number(index);
    }
    return object + '}';
}

QByteArray replyOfManyItems()
{
    const QByteArray item = R"({"type":"message","content":[{"type":"output_text","text":"a"}]},)";
    return R"({"output":[)" + item.repeated(kReplyBytes / item.size()) + "{}]}";
}

// What a body costs at the least: its base64, and a copy of that.
void encodeAndCopyPictures(benchmark::State &state)
{
    const QByteArray bytes = pictureBytes();
    for (auto _ : state) {
        QByteArray body;
        body.reserve((kPictureBytes + 2) / 3 * 4 * kPictures);
        for (int picture = 0; picture < kPictures; ++picture) {
            body += bytes.toBase64();
        }
        benchmark::DoNotOptimize(body.data());
    }
    state.SetBytesProcessed(state.iterations() * kPictureBytes * kPictures);
}

void buildBodyOfPictures(benchmark::State &state)
{
    const CloudCall call = callWithPictures();
    for (auto _ : state) {
        benchmark::DoNotOptimize(call.body({}));
    }
    state.SetBytesProcessed(state.iterations() * kPictureBytes * kPictures);
}

// Reads a reply and shows both bodies, as each success does.
void readReply(benchmark::State &state, QByteArray (*makeReply)())
{
    const CloudCall call = callWithPictures();
    const QByteArray body = makeReply();
    const CloudExchange exchange{"{}", HttpReply{200, {}, body}, {}, {}};
    for (auto _ : state) {
        benchmark::DoNotOptimize(call.result(exchange, {}));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}

void printReply(benchmark::State &state, QByteArray (*makeReply)())
{
    const QByteArray body = makeReply();
    for (auto _ : state) {
        benchmark::DoNotOptimize(prettyJSONText(body));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}

void printBodyOfPictures(benchmark::State &state)
{
    const QByteArray body = callWithPictures().body({});
    for (auto _ : state) {
        benchmark::DoNotOptimize(prettyJSONText(body));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}

void snippetOfReply(benchmark::State &state)
{
    const QByteArray body = longReply();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bodySnippet(body, kBodySnippetLimit));
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}

BENCHMARK(encodeAndCopyPictures)->Unit(benchmark::kMillisecond);
BENCHMARK(buildBodyOfPictures)->Unit(benchmark::kMillisecond);
BENCHMARK(printBodyOfPictures)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readReply, ofOneLongText, longReply)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readReply, ofManyKeys, replyOfManyKeys)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readReply, ofManyItems, replyOfManyItems)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(printReply, ofOneLongText, longReply)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(printReply, ofManyKeys, replyOfManyKeys)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(printReply, ofManyItems, replyOfManyItems)->Unit(benchmark::kMillisecond);
BENCHMARK(snippetOfReply)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace velarc
