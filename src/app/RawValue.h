#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace navro {

// Every persisted enumeration lists its cases in order and names each one with an overload of
// rawValue(); reading one back from text is the same exact, case-sensitive search for all.
template <typename Enum, std::size_t N>
std::optional<Enum> fromRaw(const std::array<Enum, N>& allCases, std::string_view raw)
{
    auto found = std::find_if(allCases.begin(), allCases.end(),
                              [&](Enum value) { return rawValue(value) == raw; });
    if (found == allCases.end())
        return std::nullopt;
    return *found;
}

} // namespace navro
