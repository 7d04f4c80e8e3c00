#pragma once

#include <QImage>
#include <QRect>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace navro {

// What is captured: an area the user drags out, a window the user clicks, or the whole screen
// under the pointer.
enum class CaptureMode { area, window, screen };

// "area", "window", "screen".
std::optional<CaptureMode> captureModeFromRaw(std::string_view raw);

struct ScreenGrab {
    QImage image;
    QRect rect; // where it was on the desktop, in the display server's pixels
};

// The display as the capture service sees it. The platform implements it; tests use a fake.
class ScreenGrabber {
public:
    virtual ~ScreenGrabber() = default;
    // Lets the user choose what to capture (an overlay for an area or a window; nothing to choose
    // for the screen) and calls `done` once, later: with the picture, or with nothing when the
    // user cancelled or the display could not be read.
    virtual void grab(CaptureMode mode, std::function<void(std::optional<ScreenGrab>)> done) = 0;
};

struct RecordingRequest {
    QRect rect; // in the display server's pixels
    QString file;
    bool microphone = false; // the default input of the sound server
    bool showClicks = false; // a ring where the pointer clicks
};

// Records a part of the screen to a video file. The platform implements it; tests use a fake.
class ScreenRecorder {
public:
    virtual ~ScreenRecorder() = default;
    // Why recording cannot work here (a missing tool), in words fit for a log line; nothing
    // when it can.
    virtual std::optional<QString> unavailableReason() const = 0;
    // Starts; `finished` is called once when the recording ends, with the reason when no
    // usable file came of it. False, with `finished` never called, when it could not start.
    virtual bool start(const RecordingRequest& request,
                       std::function<void(std::optional<QString> failure)> finished) = 0;
    // Asks the recording to end and finish its file; `finished` follows.
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;
    // Before the program ends: ends the recording and waits, for a bounded time, until its file
    // is finished. `finished` is not called.
    virtual void finishBeforeExit() = 0;
};

// The display Navro runs on. Defined by the platform library.
std::unique_ptr<ScreenGrabber> makeScreenGrabber();
std::unique_ptr<ScreenRecorder> makeScreenRecorder();

} // namespace navro
