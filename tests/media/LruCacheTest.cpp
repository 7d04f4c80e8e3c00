#include "media/LruCache.h"

#include <gtest/gtest.h>
#include <string>

namespace navro {
namespace {

TEST(LruCache, HoldsAtMostItsCapacityAndLetsTheLeastRecentlyUsedGo)
{
    LruCache<std::string, int> cache(3);
    cache.insert("a", 1);
    cache.insert("b", 2);
    cache.insert("c", 3);
    ASSERT_NE(cache.find("a"), nullptr); // a is now the most recently used
    cache.insert("d", 4);                // so b goes
    EXPECT_EQ(cache.size(), 3u);
    EXPECT_EQ(cache.find("b"), nullptr);
    ASSERT_NE(cache.find("a"), nullptr);
    EXPECT_EQ(*cache.find("a"), 1);
    EXPECT_EQ(*cache.find("c"), 3);
    EXPECT_EQ(*cache.find("d"), 4);

    // Inserting the least recently used key again replaces its value and refreshes it: c goes.
    cache.insert("a", 10);
    cache.insert("e", 5);
    EXPECT_EQ(cache.size(), 3u);
    EXPECT_EQ(cache.find("c"), nullptr);
    ASSERT_NE(cache.find("a"), nullptr);
    EXPECT_EQ(*cache.find("a"), 10);
}

TEST(LruCache, ALongRunStaysAtCapacity)
{
    LruCache<int, int> cache(32);
    for (int i = 0; i < 1000; ++i)
        cache.insert(i, i);
    EXPECT_EQ(cache.size(), 32u);
    EXPECT_EQ(cache.find(967), nullptr);
    EXPECT_NE(cache.find(968), nullptr);
    EXPECT_NE(cache.find(999), nullptr);
}

} // namespace
} // namespace navro
