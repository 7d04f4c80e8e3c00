#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

struct Utf8Character {
    char32_t codePoint;
    std::size_t length; // in bytes
};

// The character that starts at byte `at` of `text`, or nothing when the bytes there are not
// well-formed UTF-8 (overlong forms, surrogates and values past U+10FFFF included).
std::optional<Utf8Character> decodeUtf8At(std::string_view text, std::size_t at);

// `text` with every byte that is not part of well-formed UTF-8 replaced by U+FFFD.
std::string withValidUtf8(std::string_view text);

} // namespace navro
