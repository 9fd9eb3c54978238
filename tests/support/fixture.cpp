#include "support/fixture.h"

#include <QFile>

namespace velarc {

QByteArray fixtureBytes(const char *path)
{
    QFile file(QStringLiteral(VELARC_FIXTURES "/") + QString::fromUtf8(path));
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no fixture %s", path);
    }
    return file.readAll();
}

QString fixtureText(const char *path)
{
    QByteArray bytes = fixtureBytes(path);
    if (bytes.endsWith('\n')) {
        bytes.chop(1);
    }
    return QString::fromUtf8(bytes);
}

} // namespace velarc
