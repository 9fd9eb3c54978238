#pragma once

// What assistive programs see of a window.

#include <QAccessible>
#include <QStringList>

#include <functional>

class QQuickWindow;

namespace velarc {

// Each element from `root` on, in reading order.
void forEachElement(
    QAccessibleInterface *root, const std::function<void(QAccessibleInterface &)> &look);

// Every text of every element: names, descriptions, values, and what its text interface gives.
[[nodiscard]] QStringList accessibleTexts(QQuickWindow &window);

// The first element of the role and name; null if there is none.
[[nodiscard]] QAccessibleInterface *accessibleElement(
    QQuickWindow &window, QAccessible::Role role, const QString &name);

} // namespace velarc
