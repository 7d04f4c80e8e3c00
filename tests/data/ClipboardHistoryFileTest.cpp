#include "data/ClipboardHistoryFile.h"

#include "ClipboardItemPrinter.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

using namespace std::chrono;

ClipboardItem item(std::string id, ClipboardKind kind, std::string text, WallTime date)
{
    ClipboardItem result;
    result.id = std::move(id);
    result.kind = kind;
    result.text = std::move(text);
    result.date = date;
    return result;
}

// 2024-05-06 07:08:09.123 UTC.
const WallTime someDate(milliseconds(1'714'979'289'123));

std::vector<ClipboardItem> sampleHistory()
{
    auto withImage = item("0E9B0A64-1A43-4B1C-8C5D-3E8F6A2B9C11", ClipboardKind::image, "640 × 480",
                          someDate - hours(1));
    withImage.imageFile = "0E9B0A64-1A43-4B1C-8C5D-3E8F6A2B9C11.png";
    auto fromEditor =
        item("5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B", ClipboardKind::text,
             "caf\u00e9 \u0645\u0631\u062d\u0628\u0627 \U0001F600\n\tline two \x01\x1f", someDate);
    fromEditor.sourceApp = "Text Editor";
    return {
        fromEditor,
        item("A1B2C3D4-E5F6-4789-8ABC-DEF012345678", ClipboardKind::link, "https://example.com",
             someDate - milliseconds(1)),
        item("00000000-0000-4000-8000-000000000000", ClipboardKind::file, "/tmp/a b\n/tmp/c",
             WallTime(seconds(978'307'200 - 2))),
        withImage,
        item("FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF", ClipboardKind::text, "", someDate),
    };
}

TEST(ClipboardHistoryFile, WhatIsWrittenReadsBackTheSameInABinaryPropertyList)
{
    const auto history = sampleHistory();
    const std::string bytes = encodeClipboardHistory(history);
    EXPECT_EQ(bytes.substr(0, 8), "bplist00");
    const auto decoded = decodeClipboardHistory(bytes);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->skipped, 0u);
    EXPECT_EQ(decoded->items, history);

    const auto empty = decodeClipboardHistory(encodeClipboardHistory({}));
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->items.empty());
}

TEST(ClipboardHistoryFile, BytesThatAreNotUtf8AreReadAsReplacementCharactersAndWrittenReadably)
{
    auto history = sampleHistory();
    std::string bytes = encodeClipboardHistory(history);
    // A binary list stores "Text Editor" as ASCII; a stray high byte there is no UTF-8.
    bytes[bytes.find("Text Editor")] = '\xa3';
    const auto decoded = decodeClipboardHistory(bytes);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->items[0].sourceApp, "\ufffdext Editor");
    const auto again = decodeClipboardHistory(encodeClipboardHistory(decoded->items));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->items, decoded->items);

    history[1].text = "caf\xc3 \xed\xa0\x80!";
    const auto written = decodeClipboardHistory(encodeClipboardHistory(history));
    ASSERT_TRUE(written);
    EXPECT_EQ(written->items[1].text, "caf\ufffd \ufffd\ufffd\ufffd!");
}

// A date before 2001 keeps whole seconds only; a NUL cannot be kept and is left out.
TEST(ClipboardHistoryFile, WhatTheFormatCannotHoldIsWrittenAsNearAsItCan)
{
    auto history = sampleHistory();
    history[0].date = WallTime(seconds(978'307'200) - milliseconds(1500));
    history[0].text = std::string("a\0b", 3);
    const auto decoded = decodeClipboardHistory(encodeClipboardHistory(history));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->items[0].date, WallTime(seconds(978'307'200 - 2)));
    EXPECT_EQ(decoded->items[0].text, "ab");
}

std::string xmlHistory(const std::string& entries)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD "
           "PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\"><array>" +
           entries + "</array></plist>";
}

std::string entry(const std::string& id, const std::string& kind, const std::string& rest)
{
    return "<dict><key>id</key><string>" + id + "</string><key>kind</key><string>" + kind +
           "</string>" + rest + "</dict>";
}

const std::string goodText = "<key>text</key><string>hi</string>";
const std::string goodDate = "<key>date</key><date>2024-05-06T07:08:09Z</date>";
const std::string goodId = "A1B2C3D4-E5F6-4789-8ABC-DEF012345678";

TEST(ClipboardHistoryFile, ReadsXmlAndSkipsOnlyTheEntriesItCannotUse)
{
    const std::string complete = goodText + goodDate;
    const auto imageFile = [](const char* name) {
        return "<key>imageFile</key><string>" + std::string(name) + "</string>";
    };
    struct Case {
        const char* what;
        std::string entry;
        bool kept;
    };
    const Case cases[] = {
        {"complete", entry(goodId, "text", complete), true},
        {"lower-case id", entry("a1b2c3d4-e5f6-4789-8abc-def012345678", "link", complete), true},
        {"no id", "<dict><key>kind</key><string>text</string>" + complete + "</dict>", false},
        {"id not a UUID", entry("A1B2C3D4E5F6-4789-8ABC-DEF012345678", "text", complete), false},
        {"id with braces", entry("{" + goodId + "}", "text", complete), false},
        {"unknown kind", entry(goodId, "video", complete), false},
        {"kind in other case", entry(goodId, "Text", complete), false},
        {"no text", entry(goodId, "text", goodDate), false},
        {"text a number", entry(goodId, "text", "<key>text</key><integer>4</integer>" + goodDate),
         false},
        {"no date", entry(goodId, "text", goodText), false},
        {"date as text", entry(goodId, "text", goodText + "<key>date</key><string>today</string>"),
         false},
        {"date as number", entry(goodId, "text", goodText + "<key>date</key><real>7.1e8</real>"),
         false},
        {"image file outside the folder", entry(goodId, "image", complete + imageFile("../x.png")),
         false},
        {"image file in a subfolder", entry(goodId, "image", complete + imageFile("a/x.png")),
         false},
        {"image file the folder itself", entry(goodId, "image", complete + imageFile("..")), false},
        {"not a dictionary", "<string>" + goodId + "</string>", false},
    };
    for (const Case& c : cases) {
        const auto decoded = decodeClipboardHistory(xmlHistory(c.entry));
        ASSERT_TRUE(decoded) << c.what;
        EXPECT_EQ(decoded->items.size(), c.kept ? 1u : 0u) << c.what;
        EXPECT_EQ(decoded->skipped, c.kept ? 0u : 1u) << c.what;
    }
}

TEST(ClipboardHistoryFile, ReadsEveryFieldOfAnXmlEntryAndDropsOptionalKeysOfTheWrongType)
{
    const auto decoded = decodeClipboardHistory(xmlHistory(
        entry("a1b2c3d4-e5f6-4789-8abc-def012345678", "image",
              goodText + goodDate +
                  "<key>imageFile</key><string>shot.png</string><key>source</key><string>Files"
                  "</string>") +
        entry("5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B", "text",
              goodText + goodDate +
                  "<key>imageFile</key><integer>1</integer><key>source</key><true/>")));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->items.size(), 2u);
    const ClipboardItem& image = decoded->items[0];
    EXPECT_EQ(image.id, goodId);
    EXPECT_EQ(image.kind, ClipboardKind::image);
    EXPECT_EQ(image.text, "hi");
    EXPECT_EQ(image.date, WallTime(seconds(1'714'979'289)));
    EXPECT_EQ(image.imageFile, "shot.png");
    EXPECT_EQ(image.sourceApp, "Files");
    EXPECT_EQ(decoded->items[1].imageFile, std::nullopt);
    EXPECT_EQ(decoded->items[1].sourceApp, std::nullopt);
}

TEST(ClipboardHistoryFile, KeepsTheFirstOfTwoEntriesWithOneIdAndTheOrderOfTheRest)
{
    auto history = sampleHistory();
    auto repeat = history[2];
    repeat.text = "another";
    history.insert(history.begin() + 3, repeat);
    const auto decoded = decodeClipboardHistory(encodeClipboardHistory(history));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->skipped, 1u);
    EXPECT_EQ(decoded->items, sampleHistory());
}

TEST(ClipboardHistoryFile, AnythingButAPropertyListArrayIsUnreadable)
{
    const std::string bytes = encodeClipboardHistory(sampleHistory());
    const std::string unreadable[] = {
        "",
        "not a property list",
        std::string(100, '\0'),
        bytes.substr(0, bytes.size() / 2),
        bytes.substr(0, bytes.size() - 1),
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>id</key><string>x</string>"
        "</dict></plist>",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><string>x</string></plist>",
        xmlHistory(entry(goodId, "text", goodText + goodDate)).substr(0, 150),
    };
    for (const std::string& bytesOfFile : unreadable)
        EXPECT_FALSE(decodeClipboardHistory(bytesOfFile)) << testing::PrintToString(bytesOfFile);
}

TEST(ClipboardHistoryFile, CanonicalUuidsAreUpperCaseAndExact)
{
    EXPECT_EQ(canonicalUuid("a1b2c3d4-e5f6-4789-8abc-def012345678"), goodId);
    EXPECT_EQ(canonicalUuid(goodId), goodId);
    for (const char* wrong :
         {"", "A1B2C3D4-E5F6-4789-8ABC-DEF01234567", "A1B2C3D4-E5F6-4789-8ABC-DEF0123456789",
          "A1B2C3D4_E5F6-4789-8ABC-DEF012345678", "G1B2C3D4-E5F6-4789-8ABC-DEF012345678",
          "A1B2C3D4-E5F6-4789-8ABC DEF012345678"})
        EXPECT_EQ(canonicalUuid(wrong), std::nullopt) << wrong;
}

} // namespace
} // namespace navro
