#include "accessible_tree.h"

#include <QQuickWindow>

namespace velarc {

namespace {

// Until `look` says that it has seen enough.
bool walk(QAccessibleInterface *element, const std::function<bool(QAccessibleInterface &)> &look)
{
    if (element == nullptr || !element->isValid()) {
        return false;
    }
    if (look(*element)) {
        return true;
    }
    for (int at = 0; at < element->childCount(); ++at) {
        if (walk(element->child(at), look)) {
            return true;
        }
    }
    return false;
}

void appendTexts(QStringList &texts, QAccessibleInterface &element)
{
    for (const QAccessible::Text kind : {QAccessible::Name, QAccessible::Description,
             QAccessible::Value, QAccessible::Help, QAccessible::Accelerator}) {
        texts.append(element.text(kind));
    }
    if (QAccessibleTextInterface *text = element.textInterface()) {
        texts.append(text->text(0, text->characterCount()));
    }
    texts.removeAll(QString());
}

} // namespace

void forEachElement(
    QAccessibleInterface *root, const std::function<void(QAccessibleInterface &)> &look)
{
    walk(root, [&](QAccessibleInterface &element) {
        look(element);
        return false;
    });
}

QStringList accessibleTexts(QQuickWindow &window)
{
    QStringList texts;
    forEachElement(QAccessible::queryAccessibleInterface(&window),
        [&](QAccessibleInterface &element) { appendTexts(texts, element); });
    return texts;
}

QAccessibleInterface *accessibleElement(
    QQuickWindow &window, QAccessible::Role role, const QString &name)
{
    QAccessibleInterface *found = nullptr;
    walk(QAccessible::queryAccessibleInterface(&window), [&](QAccessibleInterface &element) {
        if (element.role() == role && element.text(QAccessible::Name) == name) {
            found = &element;
        }
        return found != nullptr;
    });
    return found;
}

} // namespace velarc
