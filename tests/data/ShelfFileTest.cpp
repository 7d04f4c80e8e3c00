#include "data/ShelfFile.h"

#include <cmath>
#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;

// 2001-01-01 00:00:00 UTC plus `seconds`, the way the file counts.
WallTime sinceReference(double seconds)
{
    return WallTime(milliseconds(978307200000 + std::llround(seconds * 1000)));
}

const WallTime loadedAt = sinceReference(800000000.5);
constexpr auto sectionA = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";
constexpr auto itemB = "0B9E4A8C-7D1F-4E25-A3B6-9C8D7E6F5A4B";

struct FreshIDs {
    int next = 0;
    std::string operator()()
    {
        return "00000000-0000-4000-8000-00000000000" + std::to_string(++next);
    }
};

ShelfDecoding decode(std::string_view json)
{
    FreshIDs ids;
    return decodeShelf(json, loadedAt, std::function<std::string()>(std::ref(ids)));
}

ShelfDecoding decodePropertyList(std::string_view xml)
{
    FreshIDs ids;
    return decodeShelfPropertyList(xml, loadedAt, std::function<std::string()>(std::ref(ids)));
}

TEST(ShelfFile, WritesCompactJsonThatReadsBackEqual)
{
    const std::vector<ShelfSection> sections{
        {sectionA,
         "Work \"now\"",
         {{itemB, "/home/u/Docs/تقرير.pdf", sinceReference(767463000.125), false},
          {"1C9E4A8C-7D1F-4E25-A3B6-9C8D7E6F5A4B", "/home/u/Pictures", sinceReference(-3), true}}},
        {"2C9E4A8C-7D1F-4E25-A3B6-9C8D7E6F5A4B", "الرف", {}},
    };
    const std::string bytes = encodeShelf(sections);
    EXPECT_EQ(
        bytes.rfind(R"({"sections":[{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","items":[)", 0),
        0u);
    EXPECT_EQ(bytes.find('\n'), std::string::npos);
    const auto decoded = decode(bytes);
    ASSERT_TRUE(decoded.sections) << decoded.error;
    EXPECT_EQ(*decoded.sections, sections);
    EXPECT_EQ(decoded.skipped, 0u);
    EXPECT_EQ(encodeShelf({}), R"({"sections":[]})");
}

TEST(ShelfFile, MissingKeysTakeTheirDefaults)
{
    const auto decoded = decode(R"({"sections":[{"items":[{"path":"/x"}]},{"name":"  "},{}]})");
    ASSERT_TRUE(decoded.sections) << decoded.error;
    const auto& sections = *decoded.sections;
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].name, "Shelf");
    EXPECT_EQ(sections[1].name, "Shelf");
    EXPECT_EQ(sections[0].id, "00000000-0000-4000-8000-000000000001");
    ASSERT_EQ(sections[0].items.size(), 1u);
    EXPECT_EQ(sections[0].items[0].id, "00000000-0000-4000-8000-000000000002");
    EXPECT_EQ(sections[0].items[0].added, loadedAt);
    EXPECT_FALSE(sections[0].items[0].isFolder);

    for (const char* empty : {"{}", R"({"sections":null})", R"({"sections":[]})"}) {
        const auto none = decode(empty);
        ASSERT_TRUE(none.sections) << empty;
        EXPECT_TRUE(none.sections->empty()) << empty;
    }
}

TEST(ShelfFile, RepeatedPathsAndUnusablePathsAreLeftOutAndCounted)
{
    const auto decoded = decode(
        R"({"sections":[{"items":[{"path":"/x"},{"path":"/x"},{"path":""},{"path":"rel/y"},{}]},)"
        R"({"items":[{"path":"/x"}]}]})");
    ASSERT_TRUE(decoded.sections) << decoded.error;
    EXPECT_EQ(decoded.skipped, 4u);
    EXPECT_EQ((*decoded.sections)[0].items.size(), 1u);
    EXPECT_EQ((*decoded.sections)[1].items.size(), 1u);
}

TEST(ShelfFile, IdsThatAreNoUuidOrRepeatGetNewOnes)
{
    const auto decoded = decode(std::string(R"({"sections":[{"id":")") + sectionA +
                                R"(","items":[{"id":")" + sectionA + R"(","path":"/a"},)" +
                                R"({"id":"e621e1f8-c36c-495a-93fc-0c247a3e6e5e","path":"/b"},)" +
                                R"({"id":"nope","path":"/c"}]}]})");
    ASSERT_TRUE(decoded.sections) << decoded.error;
    const auto& section = (*decoded.sections)[0];
    EXPECT_EQ(section.id, sectionA);
    EXPECT_EQ(section.items[0].id, "00000000-0000-4000-8000-000000000001");
    EXPECT_EQ(section.items[1].id, "E621E1F8-C36C-495A-93FC-0C247A3E6E5E");
    EXPECT_EQ(section.items[2].id, "00000000-0000-4000-8000-000000000002");

    // A new id is never one the file already uses, even where that is the generator's next.
    const auto taken = decode(R"({"sections":[{"id":"00000000-0000-4000-8000-000000000001",)"
                              R"("items":[{"path":"/a"}]}]})");
    ASSERT_TRUE(taken.sections) << taken.error;
    EXPECT_EQ((*taken.sections)[0].items[0].id, "00000000-0000-4000-8000-000000000002");
}

TEST(ShelfFile, WrongTypesAndBrokenJsonFailTheWholeFile)
{
    const char* broken[] = {
        "",
        "[]",
        R"({"sections":{}})",
        R"({"sections":[3]})",
        R"({"sections":[{"name":7}]})",
        R"({"sections":[{"id":7}]})",
        R"({"sections":[{"items":{}}]})",
        R"({"sections":[{"items":["/a"]}]})",
        R"({"sections":[{"items":[{"path":5}]}]})",
        R"({"sections":[{"items":[{"path":"/a","added":"today"}]}]})",
        R"({"sections":[{"items":[{"path":"/a","added":1e300}]}]})",
        R"({"sections":[{"items":[{"path":"/a","isFolder":1}]}]})",
        R"({"sections":[{"items":[{"url":true}]}]})",
        R"({"sections":[)",
    };
    for (const char* bytes : broken) {
        const auto decoded = decode(bytes);
        EXPECT_FALSE(decoded.sections) << bytes;
        EXPECT_FALSE(decoded.error.empty()) << bytes;
    }
}

TEST(ShelfFile, ReadsTheOlderPropertyList)
{
    const std::string xml = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><array>
  <dict><key>id</key><string>)" +
                            std::string(sectionA) +
                            R"(</string><key>name</key><string>Old</string>
    <key>items</key><array>
      <dict><key>url</key><string>file:///home/u/My%20File.txt</string>
        <key>added</key><date>2025-01-01T00:00:00Z</date><key>isFolder</key><false/></dict>
      <dict><key>path</key><string>/home/u/Music</string><key>added</key><real>10.5</real>
        <key>isFolder</key><true/></dict>
      <dict><key>url</key><string>https://example.org/x</string></dict>
    </array></dict>
</array></plist>)";
    const auto decoded = decodePropertyList(xml);
    ASSERT_TRUE(decoded.sections) << decoded.error;
    ASSERT_EQ(decoded.sections->size(), 1u);
    const ShelfSection& section = decoded.sections->front();
    EXPECT_EQ(section.id, sectionA);
    EXPECT_EQ(section.name, "Old");
    ASSERT_EQ(section.items.size(), 2u);
    EXPECT_EQ(decoded.skipped, 1u); // the web address is no file
    EXPECT_EQ(section.items[0].path, "/home/u/My File.txt");
    EXPECT_EQ(section.items[0].added, WallTime(sys_days(year(2025) / 1 / 1)));
    EXPECT_EQ(section.items[1].path, "/home/u/Music");
    EXPECT_TRUE(section.items[1].isFolder);
    EXPECT_EQ(section.items[1].added, sinceReference(10.5));

    // The same records under "sections", as the JSON file has them.
    const std::string wrapped = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>sections</key><array><dict><key>name</key><string>W</string>
</dict></array></dict></plist>)";
    const auto again = decodePropertyList(wrapped);
    ASSERT_TRUE(again.sections) << again.error;
    EXPECT_EQ(again.sections->at(0).name, "W");

    for (const char* broken : {"", "not a plist", "<plist><string>x</string></plist>"})
        EXPECT_FALSE(decodePropertyList(broken).sections) << broken;
}

} // namespace
} // namespace navro
