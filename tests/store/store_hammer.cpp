// A process that works on a defaults file, for the tests to kill or to run beside another one.
//
//   store_hammer FILE write KEY NUMBER    writes the values from NUMBER on without end, and prints
//                                         the number of each one that is written
//   store_hammer FILE contend KEY MS      writes for so long under its own key and a shared one,
//                                         reads both back each time, and prints how many it wrote;
//                                         exit status 1 if one was lost or torn
//   store_hammer FILE set KEY VALUE       waits for a line, then opens the file and writes
//   store_hammer FILE meet KEY VALUE      opens the file, prints 0, waits for a line, then writes
//   store_hammer FILE library NAME -      waits for a line, then loads the library, where one
//                                         action of that name is the first list, and prints the
//                                         name of the action that it gets

#include "numbered_value.h"

#include "store/local_store.h"
#include "store/sqlite_defaults_domain.h"

#include <QString>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

using namespace velarc;

// Unbuffered, so that whatever was acknowledged reaches the reader before a kill.
void acknowledge(qint64 number)
{
    const QByteArray line = QByteArray::number(number) + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

[[noreturn]] void writeWithoutEnd(DefaultsDomain &domain, const QByteArray &key, qint64 from)
{
    for (qint64 number = from;; ++number) {
        domain.setBytes(key, numberedValue(number));
        acknowledge(number);
    }
}

int contend(DefaultsDomain &domain, const QByteArray &key, std::chrono::milliseconds duration)
{
    const auto end = std::chrono::steady_clock::now() + duration;
    qint64 number = 0;
    while (std::chrono::steady_clock::now() < end) {
        ++number;
        domain.setBytes(key, numberedValue(number));
        domain.setBytes("shared", numberedValue(number));
        const auto own = numberOf(domain.bytes(key).value_or(QByteArray()));
        const auto shared = numberOf(domain.bytes("shared").value_or(QByteArray()));
        if (own != number || !shared) {
            return 1;
        }
    }
    acknowledge(number);
    return 0;
}

void waitForALine()
{
    std::string line;
    std::getline(std::cin, line);
}

int setOnce(const QString &file, const Clock &clock, const QByteArray &key, const QByteArray &value)
{
    waitForALine();
    SqliteDefaultsDomain({file}, clock).setBytes(key, value);
    return 0;
}

int meet(DefaultsDomain &domain, const QByteArray &key, const QByteArray &value)
{
    acknowledge(0);
    waitForALine();
    domain.setBytes(key, value);
    return 0;
}

int loadLibrary(const QString &file, const Clock &clock, const QString &name)
{
    const auto firstActions = [&name] {
        AIAction action;
        action.name = name;
        return QList<AIAction>{action};
    };
    waitForALine();
    const LocalStore store(
        std::make_shared<SqliteDefaultsDomain>(QStringList{file}, clock), firstActions);
    std::cout << store.loadActions().first().name.toStdString() << std::endl;
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 5) {
        return 2;
    }
    const QString file = QString::fromLocal8Bit(argv[1]);
    const QByteArray task = argv[2];
    const QByteArray first = argv[3];
    const QByteArray second = argv[4];
    const SystemClock clock;
    if (task == "set") {
        return setOnce(file, clock, first, second);
    }
    if (task == "library") {
        return loadLibrary(file, clock, QString::fromUtf8(first));
    }
    SqliteDefaultsDomain domain({file}, clock);
    if (task == "write") {
        writeWithoutEnd(domain, first, second.toLongLong());
    }
    if (task == "meet") {
        return meet(domain, first, second);
    }
    return contend(domain, first, std::chrono::milliseconds(second.toInt()));
}
