#include "app/IniDocument.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

const IniValue* find(const IniDocument& document, const std::string& key)
{
    const auto found = document.values.find(key);
    return found == document.values.end() ? nullptr : &found->second;
}

// The file QSettings (Qt 6.4) writes for these values, as earlier versions of Navro left it.
constexpr std::string_view writtenByQSettings = "[General]\n"
                                                "arabic=\xd9\x88\xd8\xb6\xd8\xb9\n"
                                                "at=@@Variant(x)\n"
                                                "back=a\\\\b\n"
                                                "big=1e+308\n"
                                                "comma=\"Work, deep\"\n"
                                                "ctl=\\x1\n"
                                                "empty=\n"
                                                "lead=\"  x \"\n"
                                                "nl=a\\nb\\tc\n"
                                                "quote=say \\\"hi\\\"\n"
                                                "semi=\"a;b#c=d\"\n"
                                                "\n"
                                                "[Sec]\n"
                                                "k=v\n";

TEST(IniDocument, ReadsWhatQSettingsWrites)
{
    const IniDocument document = parseIni(writtenByQSettings);
    EXPECT_TRUE(document.unreadLines.empty());
    const std::map<std::string, std::string> expected{
        {"arabic", "\xd9\x88\xd8\xb6\xd8\xb9"},
        {"at", "@Variant(x)"},
        {"back", "a\\b"},
        {"big", "1e+308"},
        {"comma", "Work, deep"},
        {"ctl", "\x01"},
        {"empty", ""},
        {"lead", "  x "},
        {"nl", "a\nb\tc"},
        {"quote", "say \"hi\""},
        {"semi", "a;b#c=d"},
        {"Sec/k", "v"},
    };
    ASSERT_EQ(document.values.size(), expected.size());
    for (const auto& [key, text] : expected) {
        const IniValue* value = find(document, key);
        ASSERT_NE(value, nullptr) << key;
        EXPECT_EQ(*value, IniValue::plain(text)) << key;
    }
    // Written again, the file is the same text.
    EXPECT_EQ(writeIni(document.values), writtenByQSettings);
}

TEST(IniDocument, ValuesOfQSettingsOwnTypesAndListsAreKeptButAreNoText)
{
    const IniDocument document = parseIni("[General]\n"
                                          "list=a, b\n"
                                          "variant=@Variant(\\0\\0\\0\\x7f)\n"
                                          "size=@Size(3 4)\n"
                                          "ends=x, y\r\r\r\n");
    EXPECT_TRUE(document.unreadLines.empty());
    for (const auto& [key, raw] :
         std::map<std::string, std::string>{{"list", "a, b"},
                                            {"variant", "@Variant(\\0\\0\\0\\x7f)"},
                                            {"size", "@Size(3 4)"},
                                            {"ends", "x, y"}}) {
        const IniValue* value = find(document, key);
        ASSERT_NE(value, nullptr) << key;
        EXPECT_EQ(value->kind, IniValue::Kind::other) << key;
        EXPECT_EQ(value->text, raw) << key;
    }
    EXPECT_EQ(parseIni(writeIni(document.values)).values, document.values);
}

TEST(IniDocument, LinesThatCannotBeReadAreNamedAndLeftOut)
{
    const IniDocument document = parseIni("; a comment\n"
                                          "# another\n"
                                          "first=1\n"
                                          "no equals sign here\n"
                                          "open=\"never closed\n"
                                          "dangling=ends with\\\n"
                                          "=no key\n"
                                          "bad=\xff\xfe\n"
                                          "[unclosed\n"
                                          "bad\\x=\\xzz\n"
                                          "surrogate=\\xd800\n"
                                          "General/key=1\n"
                                          "   \t  \n"
                                          "last = 2 ; trailing comment\r\n");
    EXPECT_EQ(document.values,
              (IniValues{{"first", IniValue::plain("1")}, {"last", IniValue::plain("2")}}));
    std::vector<int> numbers;
    for (const IniLine& line : document.unreadLines)
        numbers.push_back(line.number);
    EXPECT_EQ(numbers, (std::vector<int>{4, 5, 6, 7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(document.unreadLines[0].excerpt, "no equals sign here");

    // A section whose name would turn the key line into another key.
    EXPECT_EQ(parseIni("[a/b=c]\nk=1\n").unreadLines.size(), 1u);
    EXPECT_TRUE(parseIni("[a=b]\nk=1\n").unreadLines.empty())
        << "in the section name it is harmless";
}

TEST(IniDocument, EveryTextSurvivesWritingAndReadingBack)
{
    const std::vector<std::string> texts{
        "",
        "plain",
        "  padded  ",
        "\t",
        "@starts with at",
        "@@two",
        "comma, semicolon; hash# equals=",
        "quote \" and backslash \\ and \\n literally",
        std::string("nul \0 then digits", 17),
        "\x01"
        "1f after a control",
        "\x7f"
        "beef",
        "line\nbreak\r\nand tab\t",
        "\xd9\x88\xd8\xb6\xd8\xb9 \xf0\x9f\x98\x80",
        "ends with backslash\\",
    };
    IniValues values;
    for (std::size_t i = 0; i < texts.size(); ++i)
        values["key" + std::to_string(i)] = IniValue::plain(texts[i]);
    values["Other Section/key"] = IniValue::plain("in a section");
    values["Section/with/slashes"] = IniValue::plain("deep");

    const std::string file = writeIni(values);
    const IniDocument back = parseIni(file);
    EXPECT_TRUE(back.unreadLines.empty()) << file;
    EXPECT_EQ(back.values, values) << file;
    EXPECT_EQ(file.find('\0'), std::string::npos);
}

} // namespace
} // namespace navro
