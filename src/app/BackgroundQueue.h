#pragma once

#include <QObject>
#include <QThreadPool>
#include <functional>
#include <utility>
#include <vector>

namespace navro {

// Work that would hold up the main thread (reading a large calendar or history), one job at a
// time on a thread of its own, each job's result handed back on the main thread.
//
// A queue made held keeps its jobs until release(): while Navro puts its first frame on screen,
// reading files on the other core would take the processor from it.
class BackgroundQueue final : public QObject {
public:
    explicit BackgroundQueue(bool held = false) : held_(held) { pool_.setMaxThreadCount(1); }
    // A job under way is waited for; its result is not delivered.
    ~BackgroundQueue() override { pool_.waitForDone(); }

    void run(std::function<void()> work, std::function<void()> then)
    {
        if (held_)
            waiting_.emplace_back(std::move(work), std::move(then));
        else
            start(std::move(work), std::move(then));
    }

    // Starts the jobs that waited, in the order they came.
    void release()
    {
        held_ = false;
        for (auto& [work, then] : std::exchange(waiting_, {}))
            start(std::move(work), std::move(then));
    }

private:
    void start(std::function<void()> work, std::function<void()> then)
    {
        pool_.start([this, work = std::move(work), then = std::move(then)]() mutable {
            work();
            QMetaObject::invokeMethod(this, std::move(then), Qt::QueuedConnection);
        });
    }

    bool held_;
    std::vector<std::pair<std::function<void()>, std::function<void()>>> waiting_;
    QThreadPool pool_;
};

} // namespace navro
