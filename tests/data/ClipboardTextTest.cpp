#include "data/ClipboardText.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

struct TrimCase {
    std::string input;
    std::string expected;
};

TEST(ClipboardText, TrimsExactlyTheListedSpacesAndBreaksAtBothEnds)
{
    const TrimCase cases[] = {
        {"", ""},
        {"hello", "hello"},
        {"  hello  ", "hello"},
        {"\t\n\v\f\r hello \r\n", "hello"},
        {"a \n b", "a \n b"}, // inside stays
        {"\u00a0\u1680\u2000\u2005\u200a x \u202f\u205f\u3000", "x"},
        {"\u0085\u2028x\u2029", "x"},
        {" \u3000\n\t\u00a0", ""},
        // Format characters and the former space U+180E are not white space.
        {"\u200bx\u200b", "\u200bx\u200b"},
        {"\ufeffx\ufeff", "\ufeffx\ufeff"},
        {"\u180ex", "\u180ex"},
        {"\u00e9  ", "\u00e9"},
        {"  \U0001F600 ", "\U0001F600"},
        {" \u2028\U0001F600", "\U0001F600"},
        // Malformed UTF-8 is never taken for white space, and trimming stops at it.
        {"x \xff ", "x \xff"},
        {" \xff x", "\xff x"},
        {"x\xe2\x80", "x\xe2\x80"},                 // a cut-off U+2028
        {"\xc0\xa0x\xc0\xa0", "\xc0\xa0x\xc0\xa0"}, // overlong U+0020
        {"x \xa0", "x \xa0"},                       // a lone continuation byte
        {"\xed\xa0\x80 x", "\xed\xa0\x80 x"},       // a surrogate
    };
    for (const TrimCase& c : cases)
        EXPECT_EQ(trimmedCopiedText(c.input), c.expected) << testing::PrintToString(c.input);
}

struct KindCase {
    std::string input;
    std::optional<ClipboardKind> expected;
};

TEST(ClipboardText, WebAddressesWithoutSpacesAreLinksEverythingElseText)
{
    const auto link = ClipboardKind::link;
    const auto text = ClipboardKind::text;
    const KindCase cases[] = {
        {"", std::nullopt},
        {" \n\t\u3000", std::nullopt},
        {"hello", text},
        {"https://example.com", link},
        {"http://example.com/a?b=c#d", link},
        {"  http://example.com  \n", link},
        {"HTTPS://EXAMPLE.COM", link},
        {"Http://x", link},
        {"https://\u4f8b\u3048.jp/\u00e9", link},
        {"https://example.com more", text},
        {" https://example.com x", text},
        {"visit https://example.com", text},
        // Only U+0020 counts as a space inside the text.
        {"https://example.com\tmore", link},
        {"https://example.com/\u00a0x", link},
        {"ftp://example.com/file", text},
        {"mailto:someone@example.com", text},
        {"file:///tmp/a", text},
        {"www.example.com", text},
        {"example.com:8080", text},
        {"http//example.com", text},
        {"1http://x", text},
        {"h ttp://x", text},
        {"htt://x", text},
        // The scheme's name only has to begin with "http".
        {"https+x://a", link},
        {"httpfoo:bar", link},
        {"http:", link},
        {":http", text},
    };
    for (const KindCase& c : cases)
        EXPECT_EQ(classifyCopiedText(c.input), c.expected) << testing::PrintToString(c.input);
}

} // namespace
} // namespace navro
