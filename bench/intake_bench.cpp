// Files on their way into a run: how long it takes, and how long the main thread is held meanwhile.

#include "intake/attachments.h"
#include "support/longest_gap.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUrl>

#include <benchmark/benchmark.h>

namespace velarc {
namespace {

constexpr int kFiles = 20;
constexpr qsizetype kFileBytes = 10'000'000;

QList<QUrl> pngFiles(const QTemporaryDir &folder)
{
    QByteArray content(kFileBytes, Qt::Uninitialized);
    QRandomGenerator(1).generate(
        reinterpret_cast<quint32 *>(content.begin()), reinterpret_cast<quint32 *>(content.end()));
    QList<QUrl> urls;
    for (int number = 0; number < kFiles; ++number) {
        QFile file(folder.filePath(QString::number(number) + QStringLiteral(".png")));
        if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size()) {
            urls.append(QUrl::fromLocalFile(file.fileName()));
        }
    }
    return urls;
}

QCoro::Task<void> takeIn(
    const AttachmentReader &reader, QList<QUrl> urls, std::optional<AttachmentIntake> &taken)
{
    taken = co_await reader.attachmentsFromFiles(urls, {});
}

void intakeOfTwentyTenMegabytePngFiles(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QList<QUrl> urls = pngFiles(folder);
    const AttachmentReader reader(nullptr, nullptr); // neither PDF nor drawings
    double longestGap = 0;
    for (auto _ : state) {
        LongestGap gap;
        std::optional<AttachmentIntake> taken;
        takeIn(reader, urls, taken);
        while (!taken) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        longestGap = std::max(longestGap, gap.inMilliseconds());
        if (taken->attachments.size() != kFiles) {
            state.SkipWithError("not every file was taken");
        }
        state.PauseTiming(); // 200 MB go back to the system
        taken.reset();
        state.ResumeTiming();
    }
    state.counters["longest_gap_ms"] = longestGap;
    state.SetBytesProcessed(state.iterations() * kFiles * kFileBytes);
}
BENCHMARK(intakeOfTwentyTenMegabytePngFiles)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace velarc
