#pragma once

#include <functional>
#include <memory>
#include <string>

namespace navro {

class BandAnalyzer;

// What the bars need of the platform: something that listens to everything the system plays on
// its default output and feeds it to an analyser, and word when that output changes.
class SystemAudio {
public:
    // A step of starting to listen that failed, and the system's code for why.
    struct TapError {
        std::string step;
        long code = 0;
        std::string description() const { return step + " failed (" + std::to_string(code) + ")"; }
    };
    // Listens for as long as it lives; once destroyed it no longer touches the analyser.
    class Tap {
    public:
        virtual ~Tap() = default;
    };
    using TapFailed = std::function<void(const TapError&)>;
    // Called on the capture's thread each time a batch of sound has gone through the analyser.
    using Analysed = std::function<void()>;

    virtual ~SystemAudio() = default;
    // False when the system offers no way to listen (no sound server): no tap is ever made then.
    virtual bool canListen() const = 0;
    // Starts listening on the default output. Starting may finish later; a step that fails then
    // or at any time afterwards calls `failed` once, on this thread, and the tap stays silent.
    virtual std::unique_ptr<Tap> startTap(BandAnalyzer& analyzer, TapFailed failed,
                                          Analysed analysed) = 0;
    // Called on this thread whenever another output becomes the default.
    virtual void setDefaultOutputChanged(std::function<void()> changed) = 0;
};

} // namespace navro
