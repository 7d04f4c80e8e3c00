#pragma once

#include <QObject>
#include <QThreadPool>
#include <functional>

namespace navro {

// Work that would hold up the main thread (reading a large calendar), one job at a time on a
// thread of its own, each job's result handed back on the main thread.
class BackgroundQueue final : public QObject {
public:
    BackgroundQueue() { pool_.setMaxThreadCount(1); }
    // A job under way is waited for; its result is not delivered.
    ~BackgroundQueue() override { pool_.waitForDone(); }

    void run(std::function<void()> work, std::function<void()> then)
    {
        pool_.start([this, work = std::move(work), then = std::move(then)]() mutable {
            work();
            QMetaObject::invokeMethod(this, std::move(then), Qt::QueuedConnection);
        });
    }

private:
    QThreadPool pool_;
};

} // namespace navro
