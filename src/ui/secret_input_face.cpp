#include "ui/secret_input_face.h"

#include "ui/secret_input.h"

#include <QAccessibleObject>
#include <QQuickWindow>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// Its value is dots, and it has no text interface: there is nothing to read by characters.
class SecretInputFace final
    : public QAccessibleObject
    , public QAccessibleActionInterface
{
public:
    explicit SecretInputFace(SecretInput *input) : QAccessibleObject(input) {}

    [[nodiscard]] QWindow *window() const override { return input().window(); }
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface * /*child*/) const override
    {
        return -1;
    }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QRect rect() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction()}; }
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString & /*name*/) const override
    {
        return {};
    }

private:
    [[nodiscard]] SecretInput &input() const { return *static_cast<SecretInput *>(object()); }
};

QAccessibleInterface *SecretInputFace::parent() const
{
    for (QQuickItem *item = input().parentItem(); item != nullptr; item = item->parentItem()) {
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
        if (face != nullptr && face->role() != QAccessible::Client
            && face->role() != QAccessible::NoRole) {
            return face;
        }
    }
    return input().window() == nullptr ? nullptr
                                       : QAccessible::queryAccessibleInterface(input().window());
}

QAccessible::State SecretInputFace::state() const
{
    QAccessible::State state;
    state.passwordEdit = true;
    state.editable = true;
    state.focusable = true;
    state.focused = input().hasActiveFocus();
    state.disabled = !input().isEnabled();
    state.invisible = input().window() == nullptr || !input().isVisible();
    return state;
}

QString SecretInputFace::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return input().accessibleName();
    case QAccessible::Value:
        return input().dots();
    case QAccessible::Description:
    case QAccessible::Help:
    case QAccessible::Accelerator:
    case QAccessible::DebugDescription:
    case QAccessible::UserText:
        return {};
    }
    return {};
}

QRect SecretInputFace::rect() const
{
    if (input().window() == nullptr) {
        return {};
    }
    const QRectF inWindow = input().mapRectToScene(input().boundingRect());
    return inWindow.toRect().translated(input().window()->mapToGlobal(QPoint()));
}

void *SecretInputFace::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                : nullptr;
}

void SecretInputFace::doAction(const QString &name)
{
    if (name == setFocusAction()) {
        input().forceActiveFocus(Qt::OtherFocusReason);
    }
}

QAccessibleInterface *makeFace(const QString &className, QObject *object)
{
    auto *input = qobject_cast<SecretInput *>(object);
    return input != nullptr
            && className == QLatin1StringView(SecretInput::staticMetaObject.className())
        ? new SecretInputFace(input)
        : nullptr;
}

} // namespace

void showSecretInputsToAssistivePrograms()
{
    QAccessible::installFactory(makeFace);
}

} // namespace velarc
