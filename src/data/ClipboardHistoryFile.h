#pragma once

#include "data/ClipboardItem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// The clipboard history as it is kept in "clipboard.plist": a property-list array of
// dictionaries, newest first, with the keys id, kind, text, date and, when present, imageFile and
// source.

struct ClipboardHistoryFile {
    std::vector<ClipboardItem> items;
    // Entries left out because they lacked a valid id, a known kind, a text or a date, repeated
    // an earlier id, or named an image file outside the images folder.
    std::size_t skipped = 0;
};

// Nothing when the bytes are not a property list whose root is an array.
std::optional<ClipboardHistoryFile> decodeClipboardHistory(std::string_view bytes);

std::string encodeClipboardHistory(const std::vector<ClipboardItem>& items);

} // namespace navro
