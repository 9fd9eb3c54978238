// What a large library costs: reading and writing it beside what the JSON library alone takes for
// the same bytes, rendering a long prompt, and sorting.

#include "actions/action_json.h"
#include "actions/action_list.h"
#include "actions/catalogue.h"
#include "actions/prompt_template.h"

#include <benchmark/benchmark.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLibrarySize = 10'000;

// Built-in actions over and over, each with a name and an id of its own.
QList<AIAction> largeLibrary()
{
    QList<AIAction> actions;
    while (actions.size() < kLibrarySize) {
        actions += builtInActions();
    }
    actions.resize(kLibrarySize);
    qsizetype number = 0;
    for (AIAction &action : actions) {
        action.name += u' ' + QString::number(++number * 7919 % kLibrarySize);
    }
    return actions;
}

const QList<AIAction> &library()
{
    static const QList<AIAction> kLibrary = largeLibrary();
    return kLibrary;
}

const QByteArray &libraryBytes()
{
    static const QByteArray kBytes = writeJson(encodeActions(library()));
    return kBytes;
}

void jsonParseAlone(benchmark::State &state)
{
    const QByteArray &bytes = libraryBytes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(Json::parse(bytes.begin(), bytes.end()));
    }
}

void readLibrary(benchmark::State &state)
{
    const QByteArray &bytes = libraryBytes();
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeActions(parseJson(bytes)));
    }
}

void jsonDumpAlone(benchmark::State &state)
{
    const Json document = Json::parse(libraryBytes().begin(), libraryBytes().end());
    for (auto _ : state) {
        benchmark::DoNotOptimize(document.dump());
    }
}

void writeLibrary(benchmark::State &state)
{
    const QList<AIAction> &actions = library();
    for (auto _ : state) {
        benchmark::DoNotOptimize(writeActions(actions));
    }
}

void renderMegabyteOfInput(benchmark::State &state)
{
    const QString input = u"words and more words\n"_s.repeated(50'000);
    const PromptMoment moment{Instant(std::chrono::seconds(1'771'599'600)), u"clipboard"_s};
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            renderPrompt(u"On {Current_Date}: {User_Input} and {Clipboard}", input, moment));
    }
}

void renderMegabyteOfVariables(benchmark::State &state)
{
    const QString promptTemplate = u"{User_Input}{Clipboard} "_s.repeated(45'000);
    const PromptMoment moment{Instant(std::chrono::seconds(1'771'599'600)), u"clipboard"_s};
    for (auto _ : state) {
        benchmark::DoNotOptimize(renderPrompt(promptTemplate, u"input"_s, moment));
    }
}

void sortLibraryForDisplay(benchmark::State &state)
{
    const QList<AIAction> &actions = library();
    for (auto _ : state) {
        benchmark::DoNotOptimize(sortedForDisplay(actions));
    }
}

void selectWithoutSelection(benchmark::State &state)
{
    const QList<AIAction> &actions = library();
    for (auto _ : state) {
        benchmark::DoNotOptimize(selectedAction(actions, std::nullopt));
    }
}

void mergeLibraryWithCatalogue(benchmark::State &state)
{
    const QList<AIAction> &actions = library();
    for (auto _ : state) {
        benchmark::DoNotOptimize(reconciledWithCatalogue(actions));
    }
}

BENCHMARK(jsonParseAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(readLibrary)->Unit(benchmark::kMillisecond);
BENCHMARK(jsonDumpAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(writeLibrary)->Unit(benchmark::kMillisecond);
BENCHMARK(renderMegabyteOfInput)->Unit(benchmark::kMillisecond);
BENCHMARK(renderMegabyteOfVariables)->Unit(benchmark::kMillisecond);
BENCHMARK(sortLibraryForDisplay)->Unit(benchmark::kMillisecond);
BENCHMARK(selectWithoutSelection)->Unit(benchmark::kMillisecond);
BENCHMARK(mergeLibraryWithCatalogue)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace velarc
