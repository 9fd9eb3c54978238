#pragma once

// The connect sheet in the whole window.

#include "accessible_tree.h"
#include "ui_world.h"

#include "ui/secret_input.h"

#include <stdexcept>

namespace velarc {

class ConnectWorld : public UiWorld
{
protected:
    void openSheet(AIProvider provider)
    {
        if (!window) {
            openWindow();
        }
        viewModel->connections().presentConnectSheet(provider);
        settle();
    }

    [[nodiscard]] ConnectPresenter &sheet() { return *screens->connectSheet(); }

    [[nodiscard]] SecretInput *keyField()
    {
        QAccessibleInterface *face =
            accessibleElement(*window, QAccessible::EditableText, sheet().keyLabel());
        auto *field = face == nullptr ? nullptr : qobject_cast<SecretInput *>(face->object());
        if (field == nullptr) {
            throw std::runtime_error("the sheet has no field for the key");
        }
        return field;
    }

    [[nodiscard]] QString typedKey() { return QString::fromUtf8(keyField()->secret().bytes()); }

    void connectWith(const QString &key)
    {
        type(key); // the field has the focus
        press(Qt::Key_Return);
    }

    [[nodiscard]] bool isSheetOpen() const
    {
        return viewModel->providerConnectSheetProvider().has_value();
    }
};

} // namespace velarc
