#pragma once

#include "base/async.h"
#include "base/worker.h"

#include <QByteArray>
#include <QImage>

#include <functional>
#include <memory>
#include <stop_token>

namespace velarc {

// Decodes one PNG at a time off the main thread. Main thread only; the scope must outlive it.
class PictureLoader
{
public:
    using Taker = std::function<void(QImage)>;

    explicit PictureLoader(TaskScope &tasks) : m_tasks(tasks) {}
    ~PictureLoader() { stop(); }
    PictureLoader(const PictureLoader &) = delete;
    PictureLoader &operator=(const PictureLoader &) = delete;

    // Gives `take` the picture, or a null image, from the event loop; nothing once it was stopped.
    // What was begun before is stopped.
    void load(QByteArray png, Taker take);
    void stop() { m_loading.request_stop(); }

private:
    TaskScope &m_tasks;
    std::shared_ptr<SerialWorker> m_worker = std::make_shared<SerialWorker>();
    std::stop_source m_loading;
};

} // namespace velarc
