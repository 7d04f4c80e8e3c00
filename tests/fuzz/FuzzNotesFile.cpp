// notes.json as the store loads it: whatever the bytes, decoding returns a document or a reason,
// and a document that was read is written and read back unchanged.
#include "data/NotesFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const navro::WallTime loadedAt(std::chrono::milliseconds(1700000000000));
    auto newID = [] { return std::string("00000000-0000-4000-8000-000000000000"); };
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto decoded = navro::decodeNotes(bytes, loadedAt, newID);
    if (!decoded.document) {
        if (decoded.error.empty())
            std::abort();
        return 0;
    }
    const auto again = navro::decodeNotes(navro::encodeNotes(*decoded.document), loadedAt, newID);
    if (!again.document || !(*again.document == *decoded.document))
        std::abort();
    return 0;
}
