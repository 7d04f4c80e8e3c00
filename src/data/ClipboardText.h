#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace navro {
enum class ClipboardKind { text, link, image, file };
// The UTF-8 text without white space and line breaks at either end: Unicode category Zs,
// U+0009, U+000A–U+000D, U+0085, U+2028 and U+2029.
std::string trimmedCopiedText(std::string_view utf8);
// What a copied plain string is recorded as: none when nothing is left after trimming;
// link when the trimmed text begins with a URL scheme (RFC 3986: a letter, then letters,
// digits, "+", "-" or "."; then ":") whose lower-cased name begins with "http" and the
// trimmed text contains no U+0020; text otherwise.
std::optional<ClipboardKind> classifyCopiedText(std::string_view utf8);
} // namespace navro
