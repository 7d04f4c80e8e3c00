#pragma once

#include "app/Clock.h"

#include <functional>
#include <memory>

namespace navro {

// The short demonstration after onboarding: half a second after it ends the notch opens without
// taking focus, stays open three seconds, and closes. Interrupting it skips the waits but not the
// steps, so the notch never stays open because the demonstration was cut short.
class OnboardingFinish {
public:
    struct Steps {
        std::function<bool()> isPanelVisible;
        std::function<void()> openWithoutFocus;
        std::function<void()> close;
    };

    OnboardingFinish(Clock& clock, Steps steps);
    ~OnboardingFinish();

    void start();
    // Runs what is left at once. Starting again while one runs interrupts the running one first.
    void interrupt();
    bool isRunning() const { return stage_ != Stage::idle; }

private:
    enum class Stage { idle, beforeOpen, open };

    void openStep();
    void closeStep();

    Steps steps_;
    std::unique_ptr<TaskSlot> wait_;
    Stage stage_ = Stage::idle;
};

} // namespace navro
