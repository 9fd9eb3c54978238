// The domain on disk beside other processes, and when its own is killed.

#include "numbered_value.h"
#include "store_fixture.h"

#include "support/printers.h"

#include <QFileInfo>
#include <QProcess>
#include <QSet>

#include <random>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int kKills = 200;
constexpr int kMostWritesBetweenKills = 40;
constexpr int kPatience = 30'000;

// A child that is killed with the test if that ends early.
class Hammer
{
public:
    explicit Hammer(const QStringList &arguments)
    {
        m_process.start(QStringLiteral(VELARC_STORE_HAMMER), arguments);
        EXPECT_TRUE(m_process.waitForStarted(kPatience));
    }
    ~Hammer() { kill(); }

    // The numbers that were acknowledged until `count` are there, or all if the process ended.
    void awaitLines(int count)
    {
        while (m_output.count('\n') < count && m_process.waitForReadyRead(kPatience)) {
            m_output += m_process.readAllStandardOutput();
        }
    }

    void kill()
    {
        m_process.kill();
        finish();
    }

    void go()
    {
        m_process.write("go\n");
        EXPECT_TRUE(m_process.waitForBytesWritten(kPatience));
    }

    int finish()
    {
        if (m_process.state() != QProcess::NotRunning) {
            EXPECT_TRUE(m_process.waitForFinished(kPatience));
        }
        m_output += m_process.readAllStandardOutput();
        EXPECT_EQ(m_process.readAllStandardError(), "");
        return m_process.exitCode();
    }

    // Whole lines only: the kill may have cut the last one.
    [[nodiscard]] QList<QByteArray> lines() const
    {
        QList<QByteArray> lines = m_output.split('\n');
        lines.removeLast();
        return lines;
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

int contentionMilliseconds()
{
    const int seconds = qEnvironmentVariableIntValue("VELARC_HAMMER_SECONDS");
    return (seconds > 0 ? seconds : 1) * 1000;
}

} // namespace

class DefaultsDurability : public StoreFolder
{
};

TEST_F(DefaultsDurability, noAcknowledgedWriteIsLostOrTornByAKill)
{
    const auto seed = std::random_device()();
    RecordProperty("seed", std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> writes(0, kMostWritesBetweenKills);
    qint64 lastSeen = 0;
    qint64 acknowledged = 0;
    for (int round = 0; round < kKills; ++round) {
        SCOPED_TRACE("round " + std::to_string(round) + ", seed " + std::to_string(seed));
        Hammer hammer({suite, u"write"_s, u"key"_s, QString::number(lastSeen + 1)});
        hammer.awaitLines(writes(random));
        hammer.kill();
        const auto lines = hammer.lines();
        acknowledged += lines.size();

        const auto value = openDomain()->bytes("key").value_or(numberedValue(0));
        const auto number = numberOf(value);
        ASSERT_TRUE(number) << "a torn value of " << value.size() << " bytes";
        const qint64 last = lines.isEmpty() ? lastSeen : lines.last().toLongLong();
        ASSERT_GE(*number, last);
        ASSERT_LE(*number, last + 1);
        lastSeen = *number;
    }
    EXPECT_GT(acknowledged, kKills);
    RecordProperty("acknowledged", std::to_string(acknowledged));
    EXPECT_TRUE(namesAside().isEmpty());
}

TEST_F(DefaultsDurability, twoProcessesWriteAtOnceWithoutFailure)
{
    const QString duration = QString::number(contentionMilliseconds());
    Hammer first({suite, u"contend"_s, u"first"_s, duration});
    Hammer second({suite, u"contend"_s, u"second"_s, duration});
    EXPECT_EQ(first.finish(), 0);
    EXPECT_EQ(second.finish(), 0);
    const auto domain = openDomain();
    for (const auto &[hammer, key] :
        {std::pair<Hammer &, QByteArrayView>(first, "first"), {second, "second"}}) {
        ASSERT_EQ(hammer.lines().size(), 1);
        const qint64 written = hammer.lines().first().toLongLong();
        EXPECT_GT(written, 0);
        EXPECT_EQ(numberOf(domain->bytes(key).value_or(QByteArray())), written);
        RecordProperty(key.data(), std::to_string(written));
    }
}

TEST_F(DefaultsDurability, processesThatFindADamagedFileAtOnceShareOneFreshFile)
{
    constexpr int kProcesses = 6;
    constexpr int kRounds = 5;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        fill(suite, garbage(20'000));
        QFile::remove(suite + u"-wal"_s);
        std::vector<std::unique_ptr<Hammer>> hammers;
        for (int number = 0; number < kProcesses; ++number) {
            hammers.push_back(std::make_unique<Hammer>(
                QStringList{suite, u"set"_s, u"key.%1"_s.arg(number), u"value"_s}));
        }
        for (const auto &hammer : hammers) {
            hammer->go();
        }
        for (const auto &hammer : hammers) {
            EXPECT_EQ(hammer->finish(), 0);
        }
        const auto domain = openDomain();
        for (int number = 0; number < kProcesses; ++number) {
            EXPECT_EQ(domain->bytes("key." + QByteArray::number(number)), "value") << number;
        }
        EXPECT_EQ(namesAside().size(), round + 1);
    }
}

TEST_F(DefaultsDurability, processesThatMeetDamageAtOnceWhileTheyRunShareOneFreshFile)
{
    constexpr int kProcesses = 6;
    constexpr int kRounds = 10;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        openDomain()->setBytes("filler", QByteArray(20'000, 'x'));
        std::vector<std::unique_ptr<Hammer>> hammers;
        for (int number = 0; number < kProcesses; ++number) {
            hammers.push_back(std::make_unique<Hammer>(
                QStringList{suite, u"meet"_s, u"key.%1"_s.arg(number), u"value"_s}));
            hammers.back()->awaitLines(1);
        }
        overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
        for (const auto &hammer : hammers) {
            hammer->go();
        }
        for (const auto &hammer : hammers) {
            EXPECT_EQ(hammer->finish(), 0);
        }
        const auto domain = openDomain();
        for (int number = 0; number < kProcesses; ++number) {
            EXPECT_EQ(domain->bytes("key." + QByteArray::number(number)), "value") << number;
        }
        EXPECT_EQ(namesAside().size(), round + 1);
    }
}

TEST_F(DefaultsDurability, processesThatStartAtOnceOnNothingGetOneLibrary)
{
    constexpr int kProcesses = 6;
    std::vector<std::unique_ptr<Hammer>> hammers;
    for (int number = 0; number < kProcesses; ++number) {
        hammers.push_back(std::make_unique<Hammer>(
            QStringList{suite, u"library"_s, u"library %1"_s.arg(number), u"-"_s}));
    }
    for (const auto &hammer : hammers) {
        hammer->go();
    }
    QSet<QByteArray> names;
    for (const auto &hammer : hammers) {
        EXPECT_EQ(hammer->finish(), 0);
        names.insert(hammer->lines().value(0));
    }
    EXPECT_EQ(names.size(), 1);
    const LocalStore store(openDomain(), [] { return QList<AIAction>(); });
    EXPECT_EQ(store.loadActions().value(0).name.toUtf8(), names.values().value(0));
}

} // namespace velarc
