// Files on their way into a run: how long it takes, and how long the main thread is held meanwhile.

#include "intake/attachments.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <benchmark/benchmark.h>

namespace velarc {
namespace {

using namespace std::chrono_literals;

constexpr int kFiles = 20;
constexpr qsizetype kFileBytes = 10'000'000;

// The longest time between two turns of a timer that is due every millisecond.
class LongestGap
{
public:
    LongestGap()
    {
        m_sinceTick.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
        m_timer.start(1ms);
    }

    [[nodiscard]] double inMilliseconds()
    {
        tick();
        return static_cast<double>(m_longest) / 1e6;
    }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    qint64 m_longest = 0;

    void tick()
    {
        m_longest = std::max(m_longest, m_sinceTick.nsecsElapsed());
        m_sinceTick.restart();
    }
};

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
