#pragma once

#include "app/Clock.h"
#include "data/ClipboardText.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

inline constexpr std::array allClipboardKinds{ClipboardKind::text, ClipboardKind::link,
                                              ClipboardKind::image, ClipboardKind::file};

// "text", "link", "image", "file": how a kind is written in the history file.
std::string_view rawValue(ClipboardKind kind);
std::optional<ClipboardKind> clipboardKindFromRaw(std::string_view raw);

// One entry of the clipboard history.
struct ClipboardItem {
    std::string id; // a UUID in upper-case canonical form
    ClipboardKind kind = ClipboardKind::text;
    std::string text;                     // the text or link; for files their paths, one per line
    std::optional<std::string> imageFile; // for images: the PNG's name in the images folder
    std::optional<std::string> sourceApp; // the application in front when it was copied
    WallTime date;

    bool operator==(const ClipboardItem&) const = default;
};

// The upper-case canonical form of a UUID written as 8-4-4-4-12 hexadecimal digits in either
// case, or nothing when `text` is not one.
std::optional<std::string> canonicalUuid(std::string_view text);

// The name of an image entry's PNG in the images folder.
std::string imageFileName(std::string_view id);

} // namespace navro
