#include "ui/picture_loader.h"

#include "base/errors.h"
#include "ui/result_picture.h"

#include <utility>

namespace velarc {

namespace {

QCoro::Task<void> decode(std::shared_ptr<SerialWorker> worker, QByteArray png,
    PictureLoader::Taker take, TaskScope::Ticket /*membership*/, std::stop_token stop)
{
    auto work = [png = std::move(png)](const std::stop_token &) { return decodedPng(png); };
    try {
        take(co_await worker->run(std::move(work), stop));
    } catch (const CancellationError &) {
        // Nobody waits for it any more.
    }
}

} // namespace

void PictureLoader::load(QByteArray png, Taker take)
{
    stop();
    m_loading = std::stop_source();
    // Nobody awaits it: it ends when it is stopped, by this object or by the scope.
    static_cast<void>(decode(m_worker, std::move(png), std::move(take), m_tasks.enter(m_loading),
        m_loading.get_token()));
}

} // namespace velarc
