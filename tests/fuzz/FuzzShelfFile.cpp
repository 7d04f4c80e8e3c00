// shelf.json and the older shelf.plist as the shelf store loads them: whatever the bytes,
// decoding returns sections or a reason, the sections keep the shelf's rules (ids unique, a path
// once per section, absolute paths), and what was read is written and read back unchanged.
#include "data/ShelfFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>

namespace {

void check(const navro::ShelfDecoding& decoded, navro::WallTime loadedAt,
           const std::function<std::string()>& newID)
{
    if (!decoded.sections) {
        if (decoded.error.empty())
            std::abort();
        return;
    }
    std::set<std::string> ids;
    for (const auto& section : *decoded.sections) {
        if (!ids.insert(section.id).second || section.name.empty())
            std::abort();
        std::set<std::string> paths;
        for (const auto& item : section.items)
            if (!ids.insert(item.id).second || item.path.empty() || item.path.front() != '/' ||
                !paths.insert(item.path).second)
                std::abort();
    }
    const auto again = navro::decodeShelf(navro::encodeShelf(*decoded.sections), loadedAt, newID);
    if (!again.sections || !(*again.sections == *decoded.sections))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const navro::WallTime loadedAt(std::chrono::milliseconds(1700000000000));
    std::uint64_t counter = 0;
    const std::function<std::string()> newID = [&counter] {
        char id[40];
        std::snprintf(id, sizeof id, "00000000-0000-4000-8000-%012llX",
                      static_cast<unsigned long long>(++counter));
        return std::string(id);
    };
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(navro::decodeShelf(bytes, loadedAt, newID), loadedAt, newID);
    check(navro::decodeShelfPropertyList(bytes, loadedAt, newID), loadedAt, newID);
    return 0;
}
