#include "base/worker.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace velarc {

void postToMainThread(std::function<void()> task)
{
    if (QCoreApplication *application = QCoreApplication::instance()) {
        QMetaObject::invokeMethod(application, std::move(task), Qt::QueuedConnection);
    }
}

SerialWorker::SerialWorker() : m_pool(std::make_unique<QThreadPool>())
{
    m_pool->setMaxThreadCount(1);
}

SerialWorker::~SerialWorker()
{
    m_pool->clear();
    m_pool->waitForDone();
}

void SerialWorker::enqueue(std::function<void()> job)
{
    m_pool->start(std::move(job));
}

} // namespace velarc
