#pragma once

#include <QMetaMethod>
#include <QMetaProperty>
#include <QObject>

namespace velarc {

// Counts the notifications of every property of an object.
class NotifyCounter : public QObject
{
    Q_OBJECT

public:
    explicit NotifyCounter(QObject &watched)
    {
        const QMetaMethod counting =
            metaObject()->method(metaObject()->indexOfSlot("countNotification()"));
        const QMetaObject *watchedType = watched.metaObject();
        for (int index = 0; index < watchedType->propertyCount(); ++index) {
            const QMetaProperty property = watchedType->property(index);
            if (property.hasNotifySignal()) {
                connect(&watched, property.notifySignal(), this, counting);
            }
        }
    }

    [[nodiscard]] int count() const { return m_count; }

public Q_SLOTS:
    void countNotification() { ++m_count; }

private:
    int m_count = 0;
};

} // namespace velarc
