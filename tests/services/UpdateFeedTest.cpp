#include "services/UpdateFeed.h"

#include "services/ReleaseNotes.h"

#include <QFile>
#include <gtest/gtest.h>

namespace navro {
namespace {

VersionNumber version(std::string_view text)
{
    return VersionNumber::parse(text).value();
}

TEST(VersionNumber, ReadsDottedNumbersAndNothingElse)
{
    const struct {
        std::string_view text;
        std::optional<std::string> read;
    } cases[] = {
        {"0.1.0", "0.1.0"}, {"2", "2"},        {"1.10.3.4", "1.10.3.4"},
        {"007.1", "7.1"},   {"1.2.3.4.5", {}}, {"", {}},
        {"1.", {}},         {".1", {}},        {"1..2", {}},
        {"v1.2", {}},       {"1.2-beta", {}},  {"1.2 ", {}},
        {"-1.2", {}},       {"+1", {}},        {"1234567.0", {}},
        {"1.2.x", {}},
    };
    for (const auto& example : cases) {
        const auto parsed = VersionNumber::parse(example.text);
        ASSERT_EQ(parsed.has_value(), example.read.has_value()) << example.text;
        if (parsed) {
            EXPECT_EQ(parsed->text(), *example.read);
        }
    }
}

TEST(VersionNumber, ComparesNumberByNumberWithMissingOnesAsZero)
{
    const struct {
        std::string_view older, newer;
    } ordered[] = {
        {"0.1.0", "0.2.0"}, {"0.9", "0.10"}, {"1.2", "1.2.1"},
        {"1.9.9", "2"},     {"0.1.0", "1"},  {"1.2.3.4", "1.2.3.5"},
    };
    for (const auto& pair : ordered) {
        EXPECT_LT(version(pair.older).compare(version(pair.newer)), 0) << pair.older;
        EXPECT_GT(version(pair.newer).compare(version(pair.older)), 0) << pair.newer;
    }
    EXPECT_EQ(version("1.2"), version("1.2.0.0"));
    EXPECT_EQ(version("1.02"), version("1.2"));
}

TEST(UpdateFeed, AFullFeedIsReadWithItsNotesInBothLanguagesThoughOnlyVersionAndLinkAreRequired)
{
    const auto full = parseUpdateFeed(R"({"version": "0.2.0", "date": "2026-12-01",
        "notes": {"en": "Faster start", "ar": "بدء أسرع"},
        "link": "https://navro.example/download?v=0.2.0"})");
    ASSERT_TRUE(full.offer) << full.error;
    EXPECT_EQ(full.offer->version.text(), "0.2.0");
    EXPECT_EQ(full.offer->date, "2026-12-01");
    EXPECT_EQ(full.offer->notesEnglish, "Faster start");
    EXPECT_EQ(full.offer->notesArabic, "بدء أسرع");
    EXPECT_EQ(full.offer->link, "https://navro.example/download?v=0.2.0");

    const auto least = parseUpdateFeed(R"({"version": "1", "link": "http://h/x", "extra": [1]})");
    ASSERT_TRUE(least.offer) << least.error;
    EXPECT_EQ(least.offer->date, "");
    EXPECT_EQ(least.offer->notesEnglish, "");
    EXPECT_EQ(least.offer->notesArabic, "");
}

TEST(UpdateFeed, AnythingMalformedIsNoOfferWithAReason)
{
    const std::string_view feeds[] = {
        "",
        "not json",
        R"({"version": "0.2.0", "link": "https://h/x")",
        R"(["0.2.0", "https://h/x"])",
        R"("0.2.0")",
        R"({"link": "https://h/x"})",
        R"({"version": 2, "link": "https://h/x"})",
        R"({"version": "two", "link": "https://h/x"})",
        R"({"version": "0.2.0"})",
        R"({"version": "0.2.0", "link": "file:///etc/passwd"})",
        R"#({"version": "0.2.0", "link": "javascript:alert(1)"})#",
        R"({"version": "0.2.0", "link": "https://"})",
        R"({"version": "0.2.0", "link": ["https://h/x"]})",
        R"({"version": "0.2.0", "link": "https://h/x", "date": 20261201})",
        R"({"version": "0.2.0", "link": "https://h/x", "date": "1 December"})",
        R"({"version": "0.2.0", "link": "https://h/x", "notes": "new"})",
        R"({"version": "0.2.0", "link": "https://h/x", "notes": {"en": 1, "ar": ""}})",
        R"({"version": "0.2.0", "link": "https://h/x", "notes": {"en": "", "ar": null, "x": 1}, "date": []})",
    };
    for (std::string_view feed : feeds) {
        const auto reading = parseUpdateFeed(feed);
        EXPECT_FALSE(reading.offer) << feed;
        EXPECT_FALSE(reading.error.empty()) << feed;
    }
    const std::string huge = R"({"version": "0.2.0", "link": "https://h/x", "notes": {"en": ")" +
                             std::string(maxUpdateFeedBytes, 'a') + R"("}})";
    EXPECT_FALSE(parseUpdateFeed(huge).offer);
}

ReleaseNotes notes(std::string_view version)
{
    return {VersionNumber::parse(version).value(),
            {"en " + std::string(version)},
            {"ar " + std::string(version)}};
}

std::vector<std::string> versionsShown(std::string_view lastSeen, std::string_view running)
{
    const std::vector<ReleaseNotes> all = {notes("0.4.0"), notes("0.3.0"), notes("0.2.1"),
                                           notes("0.2.0"), notes("0.1.0")};
    std::vector<std::string> shown;
    for (const ReleaseNotes& entry : notesToShow(all, lastSeen, running))
        shown.push_back(entry.version.text());
    return shown;
}

TEST(ReleaseNotes, TheVersionsSinceTheLastSeenOneShowNewestFirst)
{
    using Versions = std::vector<std::string>;
    EXPECT_EQ(versionsShown("0.2.0", "0.3.0"), (Versions{"0.3.0", "0.2.1"}));
    EXPECT_EQ(versionsShown("0.1.0", "0.2.0"), (Versions{"0.2.0"}));
    // A release without notes of its own shows those of the versions it passed.
    EXPECT_EQ(versionsShown("0.2.0", "0.3.5"), (Versions{"0.3.0", "0.2.1"}));
    // Never on a fresh install or when nothing changed (however the version is spelt).
    EXPECT_EQ(versionsShown("", "0.3.0"), Versions{});
    EXPECT_EQ(versionsShown("0.3.0", "0.3.0"), Versions{});
    EXPECT_EQ(versionsShown("0.3", "0.3.0"), Versions{});
    // After a downgrade or with a damaged record, only the running version's notes.
    EXPECT_EQ(versionsShown("0.4.0", "0.2.0"), (Versions{"0.2.0"}));
    EXPECT_EQ(versionsShown("garbage", "0.3.0"), (Versions{"0.3.0"}));
    // A running version without notes of its own has nothing to tell after a downgrade: the
    // notes below it describe what the user had already.
    EXPECT_EQ(versionsShown("0.4.0", "0.3.5"), Versions{});
}

TEST(ReleaseNotes, MalformedEntriesAreLeftOutAndTheRestSorted)
{
    const auto parsed = parseReleaseNotes(R"({
        "0.1.0": {"en": ["one"], "ar": ["واحد"]},
        "0.10.0": {"en": ["ten"], "ar": ["عشرة"]},
        "0.2.0": {"en": ["two"], "ar": ["اثنان"]},
        "next": {"en": ["x"], "ar": ["x"]},
        "0.3.0": {"en": "not a list", "ar": []},
        "0.4.0": {"en": ["fine"], "ar": [4]}
    })");
    ASSERT_EQ(parsed.size(), 3u);
    EXPECT_EQ(parsed[0].version.text(), "0.10.0");
    EXPECT_EQ(parsed[1].version.text(), "0.2.0");
    EXPECT_EQ(parsed[2].version.text(), "0.1.0");
    EXPECT_EQ(parsed[1].arabic, std::vector<std::string>{"اثنان"});
    EXPECT_TRUE(parseReleaseNotes("[]").empty());
}

} // namespace
} // namespace navro
