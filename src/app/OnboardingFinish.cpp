#include "app/OnboardingFinish.h"

namespace navro {

OnboardingFinish::OnboardingFinish(Clock& clock, Steps steps)
    : steps_(std::move(steps)), wait_(clock.makeSlot())
{
}

OnboardingFinish::~OnboardingFinish() = default;

void OnboardingFinish::start()
{
    interrupt();
    stage_ = Stage::beforeOpen;
    wait_->schedule(seconds(0.5), [this] { openStep(); });
}

void OnboardingFinish::interrupt()
{
    wait_->cancel();
    if (stage_ == Stage::beforeOpen)
        openStep();
    if (stage_ == Stage::open) {
        wait_->cancel();
        closeStep();
    }
}

void OnboardingFinish::openStep()
{
    stage_ = Stage::open;
    if (steps_.isPanelVisible())
        steps_.openWithoutFocus();
    wait_->schedule(seconds(3), [this] { closeStep(); });
}

void OnboardingFinish::closeStep()
{
    stage_ = Stage::idle;
    steps_.close();
}

} // namespace navro
