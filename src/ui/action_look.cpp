#include "ui/action_look.h"

#include "actions/action_color.h"

#include <QColor>

namespace velarc {

QString displayColor(QStringView colorHex)
{
    const ActionColor color = colorFromHex(colorHex);
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
        static_cast<float>(color.blue))
        .name();
}

} // namespace velarc
