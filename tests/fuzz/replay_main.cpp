// Runs a target once for each file of a folder.

#include "fuzz_target.h"

#include <QDir>
#include <QFile>

#include <cstdio>

int main(int argc, char **argv)
{
    using namespace Qt::StringLiterals;
    if (argc != 2) {
        std::fputs("Usage: REPLAY FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::perror(file.fileName().toLocal8Bit().constData());
            return 1;
        }
        std::printf("%s\n", name.toUtf8().constData());
        std::fflush(stdout); // before the target may end the process
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size()));
    }
    return names.isEmpty() ? 1 : 0;
}
