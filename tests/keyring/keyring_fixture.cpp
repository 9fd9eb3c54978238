#include "keyring_fixture.h"

#include <QProcess>
#include <QUuid>

namespace velarc {

QByteArray canaryKey()
{
    return "canary-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
}

ToolRun runTool(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(20'000)) {
        ADD_FAILURE() << program.toStdString() << ": " << process.errorString().toStdString();
        return {};
    }
    return {process.exitCode(), process.readAll()};
}

QStringList itemAttributes(const QString &account)
{
    return {u"xdg:schema"_s, u"com.tolmar.velarc.ApiKey"_s, u"service"_s, kService, u"account"_s,
        account};
}

void putItem(const QString &account, const QByteArray &secret, const QStringList &options)
{
    const ToolRun run = runTool(u"secret-tool"_s,
        QStringList{u"store"_s, u"--label=Velarc API key"_s} + options + itemAttributes(account),
        secret);
    EXPECT_EQ(run.status, 0) << run.output.toStdString();
}

QByteArray itemSecret(const QString &account)
{
    return runTool(u"secret-tool"_s, QStringList{u"lookup"_s} + itemAttributes(account)).output;
}

qsizetype itemCount(const QString &account)
{
    const ToolRun run =
        runTool(u"secret-tool"_s, QStringList{u"search"_s, u"--all"_s} + itemAttributes(account));
    return run.output.count("\nlabel = ");
}

} // namespace velarc
