// Documents through the helper program, each beside the command of the library that does the work.
// Ours start from the caller: they pay for the process, the pipes and the worker.

#include "intake/pdf_export.h"
#include "intake/pdf_text_reader.h"
#include "intake/svg_rasterizer.h"
#include "support/longest_gap.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize kSquare(1024, 1024);
constexpr int kLinesOfPage = 49;

QString helper()
{
    return QStringLiteral(VELARC_DOCUMENTS);
}

template <typename Value>
QCoro::Task<void> keep(QCoro::Task<Value> task, std::optional<Value> &kept, bool &isOver)
{
    try {
        kept = co_await task;
    } catch (const std::exception &) {
        // Nothing is kept.
    }
    isOver = true;
}

template <typename Value> std::optional<Value> awaited(QCoro::Task<Value> task)
{
    std::optional<Value> kept;
    bool isOver = false;
    keep(std::move(task), kept, isOver);
    while (!isOver) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return kept;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString written(const QTemporaryDir &folder, const QString &name, const QByteArray &bytes)
{
    QFile file(folder.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                                : QString();
}

bool isRun(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitCode() == 0;
}

// Every drawing of the tests, in turn.
QStringList drawings()
{
    const QDir folder(QStringLiteral(VELARC_FIXTURES "/drawings"));
    QStringList paths;
    for (const QString &name : folder.entryList({u"*.svg"_s}, QDir::Files, QDir::Name)) {
        paths.append(folder.filePath(name));
    }
    return paths;
}

void drawingsAsPictures(benchmark::State &state)
{
    const QStringList paths = drawings();
    SVGRasterizer rasterizer(helper());
    double longestGap = 0;
    for (auto _ : state) {
        LongestGap gap;
        for (const QString &path : paths) {
            if (!awaited(rasterizer.rasterize(contentOf(path), kSquare, {}))) {
                state.SkipWithError("a drawing was not drawn");
            }
        }
        longestGap = std::max(longestGap, gap.inMilliseconds());
    }
    state.counters["longest_gap_ms"] = longestGap;
    state.SetItemsProcessed(state.iterations() * paths.size());
}
BENCHMARK(drawingsAsPictures)->Unit(benchmark::kMillisecond)->UseRealTime();

void drawingsAsPicturesByTheRenderersCommand(benchmark::State &state)
{
    const QStringList paths = drawings();
    for (auto _ : state) {
        for (const QString &path : paths) {
            isRun(u"rsvg-convert"_s,
                {u"-w"_s, u"1024"_s, u"-h"_s, u"1024"_s, u"-a"_s, u"-b"_s, u"white"_s, path});
        }
    }
    state.SetItemsProcessed(state.iterations() * paths.size());
}
BENCHMARK(drawingsAsPicturesByTheRenderersCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

QString linesOfPages(int pages)
{
    QString text;
    for (int line = 0; line < pages * kLinesOfPage; ++line) {
        text +=
            u"A line of plain words, about as long as the page is wide, and its number %1.\n"_s.arg(
                line);
    }
    return text;
}

void exportOfPages(benchmark::State &state)
{
    const int pages = static_cast<int>(state.range(0));
    const QString text = linesOfPages(pages);
    PdfExport pdfExport(helper());
    double longestGap = 0;
    for (auto _ : state) {
        LongestGap gap;
        const auto url = awaited(pdfExport.exportPDF(text, u"Benchmark"_s, {}));
        longestGap = std::max(longestGap, gap.inMilliseconds());
        if (!url || !QFile::remove(url->toLocalFile())) {
            state.SkipWithError("there is no file");
        }
    }
    state.counters["longest_gap_ms"] = longestGap;
    state.counters["pages_per_s"] =
        benchmark::Counter(double(pages), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(exportOfPages)
    ->RangeMultiplier(10)
    ->Range(10, 10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

QByteArray thousandPages()
{
    PdfExport pdfExport(helper());
    const auto url = awaited(pdfExport.exportPDF(linesOfPages(1000), u"Benchmark"_s, {}));
    const QByteArray pdf = url ? contentOf(url->toLocalFile()) : QByteArray();
    if (url) {
        QFile::remove(url->toLocalFile());
    }
    return pdf;
}

void textOfThousandPages(benchmark::State &state)
{
    const QByteArray pdf = thousandPages();
    PdfTextReader reader(helper());
    double longestGap = 0;
    for (auto _ : state) {
        LongestGap gap;
        const auto text = awaited(reader.read(pdf, {}));
        longestGap = std::max(longestGap, gap.inMilliseconds());
        if (!text || !text->text || text->text->count(u"Benchmark"_s) != 1000) {
            state.SkipWithError("pages are missing");
        }
    }
    state.counters["longest_gap_ms"] = longestGap;
}
BENCHMARK(textOfThousandPages)->Unit(benchmark::kMillisecond)->UseRealTime();

void textOfThousandPagesByTheReadersCommand(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = written(folder, u"a.pdf"_s, thousandPages());
    for (auto _ : state) {
        if (!isRun(u"pdftotext"_s, {path, u"-"_s})) {
            state.SkipWithError("the command failed");
        }
    }
}
BENCHMARK(textOfThousandPagesByTheReadersCommand)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace velarc
