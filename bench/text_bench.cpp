// What the text primitives cost: bytes of UTF-16 a second.

#include "base/text.h"

#include <benchmark/benchmark.h>

namespace velarc {

namespace {

constexpr int64_t kBytesPerUnit = 2;
constexpr int64_t kKilobyte = 1000;
constexpr int64_t kMegabyte = 1000 * kKilobyte;

constexpr const char *kAscii = "The quick brown fox jumps over the lazy dog\n";
constexpr const char *kWindows = "The quick brown fox jumps over the lazy dog\r\n";
constexpr const char *kGerman = "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich\n";
constexpr const char *kEmoji = "\U0001F468\u200D\U0001F469\u200D\U0001F467 \U0001F1E9\U0001F1EA\n";

QString textOf(const char *unit, int64_t bytes)
{
    const QString repeated = QString::fromUtf8(unit);
    const qsizetype length = bytes / kBytesPerUnit;
    return repeated.repeated(length / repeated.size() + 1).left(length);
}

void setBytes(benchmark::State &state, const QString &text)
{
    state.SetBytesProcessed(state.iterations() * text.size() * kBytesPerUnit);
}

void countCharacters(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(characterCount(text));
    }
    setBytes(state, text);
}

void takeWholePrefix(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(characterPrefix(text, text.size()));
    }
    setBytes(state, text);
}

// The cost must not depend on the text's length, so no bytes are set.
void takeTitle(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(characterPrefix(text, 72));
    }
}

void foldToLower(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(foldedToLower(text));
    }
    setBytes(state, text);
}

void splitIntoLines(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(splitLines(text));
    }
    setBytes(state, text);
}

void testForBlank(benchmark::State &state, const char *unit)
{
    const QString text = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(isBlank(text));
    }
    setBytes(state, text);
}

void sizes(benchmark::internal::Benchmark *bench)
{
    bench->Arg(kKilobyte)->Arg(100 * kKilobyte)->Arg(10 * kMegabyte);
}

BENCHMARK_CAPTURE(countCharacters, ascii, kAscii)->Apply(sizes);
BENCHMARK_CAPTURE(countCharacters, windowsLines, kWindows)->Apply(sizes);
BENCHMARK_CAPTURE(countCharacters, german, kGerman)->Apply(sizes);
BENCHMARK_CAPTURE(countCharacters, emoji, kEmoji)->Apply(sizes);
BENCHMARK_CAPTURE(takeWholePrefix, ascii, kAscii)->Apply(sizes);
BENCHMARK_CAPTURE(takeWholePrefix, german, kGerman)->Apply(sizes);
BENCHMARK_CAPTURE(takeTitle, ascii, kAscii)->Apply(sizes);
BENCHMARK_CAPTURE(takeTitle, emoji, kEmoji)->Apply(sizes);
BENCHMARK_CAPTURE(foldToLower, ascii, kAscii)->Apply(sizes);
BENCHMARK_CAPTURE(foldToLower, german, kGerman)->Apply(sizes);
BENCHMARK_CAPTURE(splitIntoLines, ascii, kAscii)->Apply(sizes);
BENCHMARK_CAPTURE(splitIntoLines, windowsLines, kWindows)->Apply(sizes);
BENCHMARK_CAPTURE(testForBlank, spaces, " \t\r\n")->Apply(sizes);

} // namespace

} // namespace velarc
