#pragma once

#include <string_view>

namespace navro {

// A visible text in both interface languages; the one shown is chosen where it is drawn.
struct BilingualText {
    std::string_view english;
    std::string_view arabic;

    constexpr std::string_view in(bool isArabic) const { return isArabic ? arabic : english; }
    constexpr bool operator==(const BilingualText&) const = default;
};

} // namespace navro
