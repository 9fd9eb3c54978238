// What each kind of output of the local engine costs: bytes of UTF-16 a second, on 1 KB, 100 KB and
// 10 MB of them.

#include "engines/local_fallback_engine.h"

#include <benchmark/benchmark.h>

namespace velarc {

namespace {

constexpr int64_t kBytesPerUnit = 2;
constexpr int64_t kKilobyte = 1000;
constexpr int64_t kMegabyte = 1000 * kKilobyte;

constexpr const char *kProse = "The quick brown fox, \"well fed\", jumps over the lazy dog\n";

// A text of so many bytes of UTF-16. Without sentence marks every kind reads to the end of it, but
// for those that only look for a first line.
QString textOf(const char *unit, int64_t bytes)
{
    const QString repeated = QString::fromUtf8(unit);
    const qsizetype length = bytes / kBytesPerUnit;
    return repeated.repeated(length / repeated.size() + 1).left(length);
}

void generate(benchmark::State &state, const char *name, const char *unit)
{
    AIAction action;
    action.name = QString::fromUtf8(name);
    const QString input = textOf(unit, state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(LocalFallbackEngine::generate(action, input));
    }
    state.SetBytesProcessed(state.iterations() * input.size() * kBytesPerUnit);
}

void sizes(benchmark::internal::Benchmark *bench)
{
    bench->Arg(kKilobyte)->Arg(100 * kKilobyte)->Arg(10 * kMegabyte);
}

BENCHMARK_CAPTURE(generate, oneSentence, "One sentence", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, brainstorm, "Brainstorm", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, mealPlan, "Meal", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, keyPoints, "Summary", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, mergeRequestOfOneLine, "Git", "diff --git a/x b/x ")->Apply(sizes);
BENCHMARK_CAPTURE(generate, weeklyPlan, "Planning", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, joke, "Joke", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, actionItemsBehindBlankLines, "Tasks", " \n")->Apply(sizes);
BENCHMARK_CAPTURE(generate, emailReply, "Email", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, lineTable, "Translate", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, lineTableOfShortLines, "Translate", "a\n")->Apply(sizes);
BENCHMARK_CAPTURE(generate, lineTableOfQuotes, "Translate", "\"")->Apply(sizes);
BENCHMARK_CAPTURE(generate, visualConcept, "Icon", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, preview, "Plain", kProse)->Apply(sizes);

// Each of the four patterns is searched to the end of the text.
BENCHMARK_CAPTURE(generate, invoice, "Invoice", kProse)->Apply(sizes);
BENCHMARK_CAPTURE(generate, invoiceOfNearHits, "Invoice", "inv. total; due date; ")->Apply(sizes);

// Their first pieces stand at the front: the rest is not read.
BENCHMARK_CAPTURE(generate, keyPointsAtTheFront, "Summary", "A point. ")->Apply(sizes);
BENCHMARK_CAPTURE(generate, oneSentenceAtTheFront, "One sentence", "A point. ")->Apply(sizes);
BENCHMARK_CAPTURE(generate, actionItemsAtTheFront, "Tasks", kProse)->Apply(sizes);

} // namespace

} // namespace velarc
