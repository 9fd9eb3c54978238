#include "entry/window_requests.h"

#include "base/text.h"
#include "entry/desktop_names.h"

#include <QTimer>

#include <utility>

namespace velarc {

namespace {

// Longer than any address that means something, however it is decorated.
constexpr qsizetype kLongestAddress = 64 * 1024;

// The address in its plainest form: path, query and fragment say nothing. Empty for an address that
// is not ours.
QUrl plainUrl(const QString &address)
{
    if (address.size() > kLongestAddress) {
        return {};
    }
    const QUrl url(trimmed(address).toString());
    for (const QLatin1StringView known : {kHandoffUrl, kResultUrl}) {
        const QUrl plain{QString(known)};
        if (foldedToLower(url.scheme()) == plain.scheme()
            && foldedToLower(url.host()) == plain.host()) {
            return plain;
        }
    }
    return {};
}

} // namespace

void WindowRequests::activate(const ActivationContext &context)
{
    present(context);
}

void WindowRequests::open(const QStringList &addresses, const ActivationContext &context)
{
    for (const QString &address : addresses) {
        const QUrl url = plainUrl(address);
        if (!url.isEmpty() && !m_urls.contains(url)) {
            m_urls.append(url);
        }
    }
    present(context);
}

void WindowRequests::select(const QUuid &action, const ActivationContext &context)
{
    m_action = action;
    present(context);
}

void WindowRequests::present(const ActivationContext &context)
{
    m_context = context;
    m_wasAskedFor = true;
    if (!std::exchange(m_isPosted, true)) {
        // A timer comes behind all calls that have arrived by now; a posted event would come amid
        // them.
        QTimer::singleShot(0, this, [this] { handleAll(); });
    }
}

void WindowRequests::handleAll()
{
    m_isPosted = false;
    const QList<QUrl> urls = std::exchange(m_urls, {});
    const auto action = std::exchange(m_action, std::nullopt);
    m_handlers.present(std::exchange(m_context, {}));
    if (action) {
        m_handlers.selectAction(*action);
    }
    for (const QUrl &url : urls) {
        m_handlers.openUrl(url);
    }
}

} // namespace velarc
