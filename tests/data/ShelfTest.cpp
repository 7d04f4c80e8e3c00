#include "data/Shelf.h"

#include <gtest/gtest.h>
#include <memory>

namespace navro {
namespace {

using namespace std::chrono;

const WallTime monday{milliseconds(1'780'000'000'000)};

// Ids "1", "2", … in the order they are asked for, so that a test can name what it made.
struct CountingIDs {
    std::shared_ptr<int> next = std::make_shared<int>(0);
    std::string operator()() const { return std::to_string(++*next); }
};

std::vector<std::string> names(const Shelf& shelf)
{
    std::vector<std::string> list;
    for (const ShelfSection& section : shelf.sections())
        list.push_back(section.name);
    return list;
}

std::vector<std::string> paths(const Shelf& shelf, std::string_view sectionID)
{
    std::vector<std::string> list;
    if (const ShelfSection* section = shelf.section(sectionID))
        for (const ShelfItem& item : section->items)
            list.push_back(item.path);
    return list;
}

// Sections "Shelf" (id 1), "Work" (id 2), "Photos" (id 3); Shelf holds /a (id 4) and /b (id 5),
// Work holds /c (id 6).
class ShelfRules : public ::testing::Test {
protected:
    void SetUp() override
    {
        shelf.ensureSection("Shelf", ids);
        shelf.addSection("Work", ids);
        shelf.addSection("Photos", ids);
        shelf.addItems("1", {{"/a", false}, {"/b", true}}, monday, ids);
        shelf.addItems("2", {{"/c", false}}, monday, ids);
    }

    CountingIDs ids;
    Shelf shelf;
};

TEST(ShelfRulesFresh, AnEmptyShelfGetsOneSectionOnce)
{
    CountingIDs ids;
    Shelf shelf;
    EXPECT_EQ(shelf.addItems("", {{"/a", false}}, monday, ids), 0u);
    EXPECT_TRUE(shelf.ensureSection("الرف", ids));
    EXPECT_FALSE(shelf.ensureSection("Shelf", ids));
    EXPECT_EQ(names(shelf), std::vector<std::string>{"الرف"});
}

TEST_F(ShelfRules, AddingKeepsEachPathOncePerSection)
{
    const std::vector<ShelfEntry> entries{{"/b", false}, {"/d", false}, {"/d", false}, {"", false}};
    EXPECT_EQ(shelf.addItems("1", entries, monday + 5s, ids), 1u);
    EXPECT_EQ(paths(shelf, "1"), (std::vector<std::string>{"/a", "/b", "/d"}));
    // The same path is welcome in another section.
    EXPECT_EQ(shelf.addItems("2", {{"/a", false}}, monday, ids), 1u);
    EXPECT_EQ(paths(shelf, "2"), (std::vector<std::string>{"/c", "/a"}));
    EXPECT_EQ(shelf.addItems("no such section", {{"/e", false}}, monday, ids), 0u);

    const ShelfItem& added = shelf.section("1")->items.back();
    EXPECT_EQ(added.added, monday + 5s);
    EXPECT_FALSE(added.isFolder);
    EXPECT_TRUE(shelf.section("1")->items[1].isFolder);
}

TEST_F(ShelfRules, SectionsAreAddedRenamedAndRemovedByTheirRules)
{
    EXPECT_FALSE(shelf.addSection("  \t ", ids));
    EXPECT_EQ(shelf.addSection("  Later  ", ids), std::optional<std::string>("7"));
    EXPECT_TRUE(shelf.renameSection("2", " Projects "));
    EXPECT_FALSE(shelf.renameSection("2", "Projects")); // no change
    EXPECT_FALSE(shelf.renameSection("2", "   "));
    EXPECT_FALSE(shelf.renameSection("99", "X"));
    EXPECT_EQ(names(shelf), (std::vector<std::string>{"Shelf", "Projects", "Photos", "Later"}));

    EXPECT_TRUE(shelf.removeSection("2"));
    EXPECT_EQ(shelf.sectionOfItem("6"), nullptr); // its items went with it
    EXPECT_TRUE(shelf.removeSection("1"));
    EXPECT_TRUE(shelf.removeSection("3"));
    EXPECT_FALSE(shelf.removeSection("7")); // the last one stays
    EXPECT_FALSE(shelf.removeSection("99"));
    EXPECT_EQ(names(shelf), std::vector<std::string>{"Later"});
}

TEST_F(ShelfRules, SectionsMoveToAnyPositionClamped)
{
    struct Case {
        const char* id;
        std::size_t index;
        bool moved;
        std::vector<std::string> order;
    };
    const Case cases[] = {
        {"1", 2, true, {"Work", "Photos", "Shelf"}},  {"1", 99, true, {"Work", "Photos", "Shelf"}},
        {"3", 0, true, {"Photos", "Shelf", "Work"}},  {"2", 1, false, {"Shelf", "Work", "Photos"}},
        {"3", 5, false, {"Shelf", "Work", "Photos"}}, {"99", 0, false, {"Shelf", "Work", "Photos"}},
    };
    for (const Case& c : cases) {
        Shelf copy = shelf;
        EXPECT_EQ(copy.moveSection(c.id, c.index), c.moved) << c.id << " to " << c.index;
        EXPECT_EQ(names(copy), c.order) << c.id << " to " << c.index;
    }
}

TEST_F(ShelfRules, ItemsMoveWithinAndAcrossSections)
{
    struct Case {
        const char* item;
        const char* section;
        std::size_t index;
        bool moved;
        std::vector<std::string> shelfPaths, workPaths;
    };
    const Case cases[] = {
        {"4", "1", 1, true, {"/b", "/a"}, {"/c"}},   {"4", "1", 0, false, {"/a", "/b"}, {"/c"}},
        {"5", "2", 0, true, {"/a"}, {"/b", "/c"}},   {"5", "2", 9, true, {"/a"}, {"/c", "/b"}},
        {"6", "1", 1, true, {"/a", "/c", "/b"}, {}}, {"6", "99", 0, false, {"/a", "/b"}, {"/c"}},
        {"99", "1", 0, false, {"/a", "/b"}, {"/c"}},
    };
    for (const Case& c : cases) {
        Shelf copy = shelf;
        EXPECT_EQ(copy.moveItem(c.item, c.section, c.index), c.moved) << c.item;
        EXPECT_EQ(paths(copy, "1"), c.shelfPaths) << c.item;
        EXPECT_EQ(paths(copy, "2"), c.workPaths) << c.item;
    }
}

TEST_F(ShelfRules, AnItemMovedToASectionWithItsPathMergesIntoTheOneThere)
{
    shelf.addItems("2", {{"/a", false}}, monday, ids); // id 7
    EXPECT_TRUE(shelf.moveItem("4", "2", 0));
    EXPECT_EQ(paths(shelf, "1"), std::vector<std::string>{"/b"});
    EXPECT_EQ(paths(shelf, "2"), (std::vector<std::string>{"/c", "/a"}));
    EXPECT_EQ(shelf.sectionOfItem("7")->id, "2");
    EXPECT_EQ(shelf.sectionOfItem("4"), nullptr);
}

TEST_F(ShelfRules, RemovingAnItemLeavesTheOthers)
{
    EXPECT_TRUE(shelf.removeItem("4"));
    EXPECT_FALSE(shelf.removeItem("4"));
    EXPECT_EQ(paths(shelf, "1"), std::vector<std::string>{"/b"});
    EXPECT_EQ(paths(shelf, "2"), std::vector<std::string>{"/c"});
}

} // namespace
} // namespace navro
