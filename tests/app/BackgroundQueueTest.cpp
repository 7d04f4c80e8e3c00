#include "app/BackgroundQueue.h"

#include "QtTestApplication.h"

#include <QCoreApplication>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>
#include <mutex>

namespace navro {
namespace {

TEST(BackgroundQueueTest, WorksAwayFromTheMainThreadAndHandsTheResultBackInOrder)
{
    testApplication();
    BackgroundQueue queue;
    std::mutex lock;
    std::vector<std::string> done;
    std::vector<bool> workOnMain;
    std::vector<bool> thenOnMain;
    for (const std::string name : {"first", "second", "third"})
        queue.run(
            [&] {
                std::scoped_lock locked(lock);
                workOnMain.push_back(QThread::currentThread() == qApp->thread());
            },
            [&, name] {
                thenOnMain.push_back(QThread::currentThread() == qApp->thread());
                done.push_back(name);
            });
    ASSERT_TRUE(waitFor([&] { return done.size() == 3; }));
    EXPECT_EQ(done, (std::vector<std::string>{"first", "second", "third"}));
    EXPECT_EQ(workOnMain, (std::vector<bool>{false, false, false}));
    EXPECT_EQ(thenOnMain, (std::vector<bool>{true, true, true}));
}

TEST(BackgroundQueueTest, AHeldQueueStartsNothingUntilReleased)
{
    testApplication();
    BackgroundQueue queue(/*held=*/true);
    std::atomic<int> worked = 0;
    std::vector<int> delivered;
    queue.run([&] { ++worked; }, [&] { delivered.push_back(1); });
    queue.run([&] { ++worked; }, [&] { delivered.push_back(2); });
    QCoreApplication::processEvents();
    EXPECT_EQ(worked, 0);
    EXPECT_TRUE(delivered.empty());

    queue.release();
    ASSERT_TRUE(waitFor([&] { return delivered.size() == 2; }));
    EXPECT_EQ(worked, 2);
    EXPECT_EQ(delivered, (std::vector<int>{1, 2}));
    // Released for good: a later job starts at once.
    queue.run([&] { ++worked; }, [&] { delivered.push_back(3); });
    ASSERT_TRUE(waitFor([&] { return delivered.size() == 3; }));
}

} // namespace
} // namespace navro
