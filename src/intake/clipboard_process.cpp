#include "intake/clipboard_process.h"

#include "intake/child_process.h"

#include <QCoreApplication>
#include <QDir>

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The helper bounds its own waiting for the clipboard's owner more tightly.
constexpr std::chrono::milliseconds kReadingTime = 90s;
constexpr qsizetype kTextLimit = qsizetype(1) << 30;

constexpr std::chrono::milliseconds kCopyingTime = 20s;
constexpr qsizetype kReplyLimit = 4096;

bool hasXServer()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY");
}

QString readText(const QString &program, const std::stop_token &stop)
{
    ChildProcess helper(program, {u"text"_s});
    const std::stop_callback onStop(stop, [&helper] { helper.kill(); });
    if (!helper.isRunning() || !helper.converse({}, kReadingTime, kTextLimit)) {
        return {};
    }
    return helper.waitForSuccess() ? QString::fromUtf8(helper.takeOutput()) : QString();
}

} // namespace

QString clipboardHelperPath()
{
    return QDir(QCoreApplication::applicationDirPath())
        .absoluteFilePath(u"../libexec/velarc/velarc-clipboard"_s);
}

bool keepOnClipboard(const QString &program, const CopiedThing &thing, const std::stop_token &stop)
{
    if (!hasXServer()) {
        return false;
    }
    const bool isText = thing.kind == CopiedThing::Kind::Text;
    ChildProcess helper(program, {u"keep"_s, isText ? u"text"_s : u"picture"_s});
    const std::stop_callback onStop(stop, [&helper] { helper.kill(); });
    // What stays on is the helper's own child, which has let go of our ends by then.
    return helper.isRunning() && helper.converse(thing.bytes, kCopyingTime, kReplyLimit)
        && helper.waitForSuccess();
}

ClipboardProcess::ClipboardProcess(QString program) : m_program(std::move(program)) {}

QCoro::Task<ClipboardPayload> ClipboardProcess::read(std::stop_token stop)
{
    ClipboardPayload payload;
    payload.text = co_await text(std::move(stop));
    co_return payload;
}

QCoro::Task<QString> ClipboardProcess::text(std::stop_token stop)
{
    if (!hasXServer()) {
        co_return QString();
    }
    auto work = [program = m_program](
                    const std::stop_token &token) { return readText(program, token); };
    co_return co_await m_worker.run(std::move(work), std::move(stop));
}

QCoro::Task<AttachmentIntake> ClipboardProcess::attachments(ClipboardPayload, std::stop_token)
{
    co_return AttachmentIntake();
}

} // namespace velarc
