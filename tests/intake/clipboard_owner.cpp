// Another program that copies: puts each NAME=FILE on the clipboard as the form NAME with the bytes
// of FILE, says "ready" and keeps them there until its standard input ends.

#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QSocketNotifier>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    auto data = std::make_unique<QMimeData>();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString &form : arguments) {
        QFile file(form.section(QLatin1Char('='), 1));
        if (!file.open(QIODevice::ReadOnly)) {
            return 1;
        }
        data->setData(form.section(QLatin1Char('='), 0, 0), file.readAll());
    }
    QGuiApplication::clipboard()->setMimeData(data.release());

    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, qApp, [] { QCoreApplication::quit(); });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
