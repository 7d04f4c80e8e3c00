#pragma once

#include "app/BilingualText.h"
#include "app/Clock.h"
#include "data/TodoRules.h"

#include <array>
#include <optional>
#include <string>

namespace navro {

// One to-do as it is kept and written.
struct Todo {
    std::string id; // a UUID in canonical upper-case form
    std::string text;
    bool done = false;
    WallTime created{};
    Priority priority = Priority::none;
    std::optional<WallTime> due;

    bool operator==(const Todo&) const = default;
};

// As the priority menus list them.
inline constexpr std::array<Priority, 4> prioritiesHighestFirst{Priority::high, Priority::medium,
                                                                Priority::low, Priority::none};

constexpr BilingualText title(Priority priority)
{
    switch (priority) {
    case Priority::none:
        break;
    case Priority::low:
        return {"Low", "منخفضة"};
    case Priority::medium:
        return {"Medium", "متوسطة"};
    case Priority::high:
        return {"High", "عالية"};
    }
    return {"No priority", "بلا أولوية"};
}

} // namespace navro
