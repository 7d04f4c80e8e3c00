#pragma once

#include "data/Shelf.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace navro {

// "shelf.json": one compact object {"sections":[{"id","name","items":[{"id","path","added",
// "isFolder"}]}]}, times as seconds since 2001-01-01 00:00:00 UTC.
std::string encodeShelf(const std::vector<ShelfSection>& sections);

struct ShelfDecoding {
    std::optional<std::vector<ShelfSection>> sections;
    std::string error; // why there are none, fit for a log line
    // Entries left out: without a path, a second copy of a path in its section.
    std::size_t skipped = 0;
};

// Lenient: a missing (or null) key takes its default (a section without a name is "Shelf", an
// item without `added` was added at `loadedAt`), a missing id gets one from `newID`, and ids
// that repeat get new ones. A key present with the wrong type fails the whole file, as does
// anything but an object at the top.
ShelfDecoding decodeShelf(std::string_view bytes, WallTime loadedAt,
                          const std::function<std::string()>& newID);

// "shelf.plist", the name earlier versions kept the shelf under: the same records in a property
// list (XML or binary), either the object above or just its list of sections. Items may give
// their location as a file URL ("url") instead of a path; dates may be dates or numbers.
ShelfDecoding decodeShelfPropertyList(std::string_view bytes, WallTime loadedAt,
                                      const std::function<std::string()>& newID);

} // namespace navro
