#include "app/QtClock.h"

#include <QTimer>

namespace navro {
namespace {

class QtTaskSlot final : public TaskSlot {
public:
    QtTaskSlot()
    {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            // The task may schedule this slot again, so it is moved out before it runs.
            auto task = std::move(task_);
            task_ = nullptr;
            if (task)
                task();
        });
    }

    void schedule(Duration delay, std::function<void()> task) override
    {
        task_ = std::move(task);
        // Long waits need no millisecond precision; short ones (hover, close) do.
        timer_.setTimerType(delay.count() >= 2000 ? Qt::CoarseTimer : Qt::PreciseTimer);
        timer_.start(std::chrono::milliseconds(std::max<Duration::rep>(delay.count(), 0)));
    }

    void cancel() override
    {
        timer_.stop();
        task_ = nullptr;
    }

    bool isPending() const override { return timer_.isActive(); }

private:
    QTimer timer_;
    std::function<void()> task_;
};

} // namespace

WallTime QtClock::now() const
{
    return std::chrono::time_point_cast<Duration>(std::chrono::system_clock::now());
}

std::unique_ptr<TaskSlot> QtClock::makeSlot()
{
    return std::make_unique<QtTaskSlot>();
}

} // namespace navro
