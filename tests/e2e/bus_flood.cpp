// Calls the window's Open many times without waiting for an answer, then waits for all of them, and
// prints how long one more call takes, in milliseconds: from the moment at which the window has
// nothing left of the flood to do.
//
// Usage: velarc_bus_flood COUNT [ADDRESS...]

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QElapsedTimer>
#include <QVariantMap>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QDBusMessage application(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"com.tolmar.velarc"_s, u"/com/tolmar/velarc"_s, u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments);
    return call;
}

bool activate(const QDBusConnection &bus)
{
    constexpr int kTimeMs = 100'000;
    return bus.call(application(u"Activate"_s, {QVariantMap()}), QDBus::Block, kTimeMs).type()
        == QDBusMessage::ReplyMessage;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication program(argc, argv);
    const QStringList addresses = QCoreApplication::arguments().mid(2);
    const int count = QCoreApplication::arguments().value(1).toInt();
    const QDBusConnection bus = QDBusConnection::sessionBus();

    QList<QDBusPendingCall> calls;
    for (int number = 0; number < count; ++number) {
        calls.append(bus.asyncCall(application(u"Open"_s, {addresses, QVariantMap()})));
    }
    for (QDBusPendingCall &call : calls) {
        call.waitForFinished();
    }
    // What the window does about the calls, it does behind its answers to them: the first of these
    // waits for that.
    QElapsedTimer timer;
    bool isAnswered = activate(bus);
    timer.start();
    isAnswered = activate(bus) && isAnswered;
    std::printf("%.3f\n", static_cast<double>(timer.nsecsElapsed()) / 1e6);
    return isAnswered ? 0 : 1;
}
