// The clipboard history file, as Navro reads it at every start.
#include "data/ClipboardHistoryFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto first =
        navro::decodeClipboardHistory(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!first)
        return 0;
    // What Navro writes back reads as itself from then on: the first write may only drop what the
    // file cannot hold (a NUL in a text, the fraction of a date before 2001).
    const auto second = navro::decodeClipboardHistory(navro::encodeClipboardHistory(first->items));
    if (!second || second->skipped != 0 || second->items.size() != first->items.size())
        std::abort();
    const auto third = navro::decodeClipboardHistory(navro::encodeClipboardHistory(second->items));
    if (!third || third->items != second->items)
        std::abort();
    return 0;
}
