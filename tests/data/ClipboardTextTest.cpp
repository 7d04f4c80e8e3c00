#include "data/ClipboardText.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

struct TrimCase {
    std::string input;
    std::string expected;
};

void expectTrimmed(std::initializer_list<TrimCase> cases)
{
    for (const TrimCase& c : cases)
        EXPECT_EQ(trimmedCopiedText(c.input), c.expected) << testing::PrintToString(c.input);
}

TEST(ClipboardText, TrimsExactlyTheListedSpacesAndBreaksAtBothEnds)
{
    expectTrimmed({{"", ""},
                   {"hello", "hello"},
                   {"  hello  ", "hello"},
                   {"\t\n\v\f\r hello \r\n", "hello"},
                   {"a \n b", "a \n b"},
                   {"\u00a0\u1680\u2000\u2005\u200a x \u202f\u205f\u3000", "x"},
                   {"\u0085\u2028x\u2029", "x"},
                   {" \u3000\n\t\u00a0", ""},
                   {"\u00e9  ", "\u00e9"},
                   {"  \U0001F600 ", "\U0001F600"},
                   {" \u2028\U0001F600", "\U0001F600"}});
    // Format characters and the former space U+180E are not white space.
    expectTrimmed({{"\u200bx\u200b", "\u200bx\u200b"},
                   {"\ufeffx\ufeff", "\ufeffx\ufeff"},
                   {"\u180ex", "\u180ex"}});
    // Malformed UTF-8 is never taken for white space, and trimming stops at it: a stray byte, a
    // cut-off U+2028, an overlong U+0020, a lone continuation byte, a surrogate.
    expectTrimmed({{"x \xff ", "x \xff"},
                   {" \xff x", "\xff x"},
                   {"x\xe2\x80", "x\xe2\x80"},
                   {"\xc0\xa0x\xc0\xa0", "\xc0\xa0x\xc0\xa0"},
                   {"x \xa0", "x \xa0"},
                   {"\xed\xa0\x80 x", "\xed\xa0\x80 x"}});
}

void expectKind(std::initializer_list<const char*> inputs, std::optional<ClipboardKind> kind)
{
    for (const char* input : inputs)
        EXPECT_EQ(classifyCopiedText(input), kind) << testing::PrintToString(input);
}

TEST(ClipboardText, WebAddressesWithoutSpacesAreLinksEverythingElseText)
{
    expectKind({"", " \n\t\u3000"}, std::nullopt);
    expectKind({"https://example.com", "http://example.com/a?b=c#d", "  http://example.com  \n",
                "HTTPS://EXAMPLE.COM", "Http://x", "https://\u4f8b\u3048.jp/\u00e9",
                // Only U+0020 counts as a space inside the text.
                "https://example.com\tmore", "https://example.com/\u00a0x",
                // The scheme's name only has to begin with "http".
                "https+x://a", "httpfoo:bar", "http:"},
               ClipboardKind::link);
    expectKind({"hello", "https://example.com more", " https://example.com x",
                "visit https://example.com", "ftp://example.com/file", "mailto:someone@example.com",
                "file:///tmp/a", "www.example.com", "example.com:8080", "http//example.com",
                "1http://x", "h ttp://x", "htt://x", ":http"},
               ClipboardKind::text);
}

} // namespace
} // namespace navro
