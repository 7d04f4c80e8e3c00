#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace navro {

// A short notice on the closed notch. Texts arrive already in the interface language of the
// moment; a new notice always gets a new id, so two notices with the same texts still differ.
struct Toast {
    std::string id;     // upper-case canonical UUID
    std::string symbol; // name of the symbol drawn at the leading side
    std::string title;
    std::string detail;
    std::optional<std::uint32_t> tint; // 0xRRGGBB; none draws the default foreground

    bool operator==(const Toast&) const = default;
};

} // namespace navro
