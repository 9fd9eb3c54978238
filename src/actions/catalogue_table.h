#pragma once

// The built-in actions as data. To change one, edit its row in the .cpp.

#include "actions/action.h"

#include <array>
#include <span>
#include <string_view>
#include <variant>

namespace velarc {

struct BuiltInAction
{
    std::u16string_view name;
    std::u16string_view icon;
    std::u16string_view colorHex;
    AIProvider provider = AIProvider::UseDefault;
    OutputFormat format = OutputFormat::Text;
    std::variant<OutputDestination, SystemDestinationKind> destination =
        OutputDestination::ShowInApp;
    std::array<std::u16string_view, 2> skills; // an empty one is none
    bool isPinned = false;
    qint64 sortOrder = 0;
    std::u16string_view prompt;
};

// In display order. The names differ from each other in more than case.
[[nodiscard]] std::span<const BuiltInAction> catalogueTable();

} // namespace velarc
