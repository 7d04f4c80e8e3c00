// What a copied string is recorded as.
#include "data/ClipboardText.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string trimmed = navro::trimmedCopiedText(text);
    const auto kind = navro::classifyCopiedText(text);
    // Trimming only takes from the ends, once is enough, and the kind is the trimmed text's.
    if (text.find(trimmed) == std::string_view::npos ||
        navro::trimmedCopiedText(trimmed) != trimmed)
        std::abort();
    if (kind.has_value() == trimmed.empty() || navro::classifyCopiedText(trimmed) != kind)
        std::abort();
    if (kind == navro::ClipboardKind::link && trimmed.find(' ') != std::string::npos)
        std::abort();
    if (kind == navro::ClipboardKind::image || kind == navro::ClipboardKind::file)
        std::abort();
    return 0;
}
