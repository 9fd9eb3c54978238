#include "system_actions/compose_service.h"

#include "system_actions/compose_address.h"
#include "system_actions/email_portal.h"
#include "system_actions/uri_handler.h"

#include <functional>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using WorkerHandle = std::shared_ptr<SerialWorker>;
using MakeAddress = std::function<QByteArray()>;

// What is said of the program that an address is for.
struct ProgramTexts
{
    QByteArray scheme;
    QString unavailable;
    QString tooLong;
};

ProgramTexts mailTexts()
{
    return {"mailto", u"Mail compose service is unavailable."_s,
        u"Text is too long to hand to the mail program."_s};
}

ProgramTexts messageTexts()
{
    return {"sms", u"Messages compose service is unavailable."_s,
        u"Text is too long to hand to the message program."_s};
}

// On the worker: looks the program up, then has it open the address.
ComposeOutcome open(const MakeAddress &makeAddress, const ProgramTexts &texts)
{
    const auto program = UriHandler::forScheme(texts.scheme);
    if (!program) {
        throw CommunicationComposeError::unavailable(texts.unavailable);
    }
    const QByteArray address = makeAddress();
    if (address.size() > kMostAddressBytes) {
        throw CommunicationComposeError::failed(texts.tooLong);
    }
    if (const auto reason = program->open(address)) {
        throw CommunicationComposeError::failed(*reason);
    }
    return ComposeOutcome::Opened;
}

auto opening(MakeAddress makeAddress, ProgramTexts texts)
{
    return [makeAddress = std::move(makeAddress), texts = std::move(texts)](
               const std::stop_token &) { return open(makeAddress, texts); };
}

// Keeps the worker until its work is done.
QCoro::Task<ComposeOutcome> openAddress(
    WorkerHandle worker, MakeAddress makeAddress, ProgramTexts texts, std::stop_token stop)
{
    auto work = opening(std::move(makeAddress), std::move(texts));
    co_return co_await worker->run(std::move(work), std::move(stop));
}

MakeAddress addressOf(ComposeDraft draft)
{
    return [draft = std::move(draft)] { return mailAddress(draft); };
}

QCoro::Task<ComposeOutcome> openMail(WorkerHandle worker, ComposeDraft draft, std::stop_token stop)
{
    const PortalCompose portal =
        co_await composeThroughPortal(draft, QDBusConnection::sessionBus(), stop);
    switch (portal) {
    case PortalCompose::Opened:
        co_return ComposeOutcome::Opened;
    case PortalCompose::Cancelled:
        co_return ComposeOutcome::Closed;
    case PortalCompose::NotThere:
    case PortalCompose::Failed:
        break;
    }
    co_return co_await openAddress(worker, addressOf(std::move(draft)), mailTexts(), stop);
}

} // namespace

QCoro::Task<ComposeOutcome> CommunicationComposeService::composeMail(
    ComposeDraft draft, std::stop_token stop)
{
    return openMail(m_worker, std::move(draft), std::move(stop));
}

QCoro::Task<ComposeOutcome> CommunicationComposeService::composeMessage(
    QStringList recipients, QString body, std::stop_token stop)
{
    MakeAddress makeAddress = [recipients = std::move(recipients), body = std::move(body)] {
        return messageAddress(recipients, body);
    };
    return openAddress(m_worker, std::move(makeAddress), messageTexts(), std::move(stop));
}

} // namespace velarc
