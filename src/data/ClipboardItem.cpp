#include "data/ClipboardItem.h"

#include "app/RawValue.h"

namespace navro {

std::string_view rawValue(ClipboardKind kind)
{
    switch (kind) {
    case ClipboardKind::text:
        return "text";
    case ClipboardKind::link:
        return "link";
    case ClipboardKind::image:
        return "image";
    case ClipboardKind::file:
        return "file";
    }
    return "text";
}

std::optional<ClipboardKind> clipboardKindFromRaw(std::string_view raw)
{
    return fromRaw(allClipboardKinds, raw);
}

std::optional<std::string> canonicalUuid(std::string_view text)
{
    if (text.size() != 36)
        return std::nullopt;
    std::string canonical(text);
    for (std::size_t i = 0; i < canonical.size(); ++i) {
        char& c = canonical[i];
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (c != '-')
                return std::nullopt;
        } else if (c >= 'a' && c <= 'f') {
            c = char(c - 'a' + 'A');
        } else if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F'))) {
            return std::nullopt;
        }
    }
    return canonical;
}

std::string imageFileName(std::string_view id)
{
    return std::string(id) + ".png";
}

} // namespace navro
