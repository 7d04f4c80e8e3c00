// first_frame_probe X Y COMMAND...: starts COMMAND and prints how many milliseconds pass until the
// pixel at (X, Y) of the root window turns black (the notch's first frame), then the command's
// pid. The command keeps running, its output discarded. Exit status 1 when nothing is drawn
// within 30 seconds.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace {

bool isBlack(Display* display, int x, int y)
{
    XImage* image = XGetImage(display, DefaultRootWindow(display), x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image)
        return false;
    const unsigned long pixel = XGetPixel(image, 0, 0) & 0xffffff;
    XDestroyImage(image);
    return pixel == 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::fprintf(stderr, "usage: first_frame_probe X Y COMMAND...\n");
        return 2;
    }
    const int x = std::atoi(argv[1]);
    const int y = std::atoi(argv[2]);
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "first_frame_probe: no display\n");
        return 2;
    }
    // The window of a program that just ended may linger until the compositor redraws.
    const auto clearBy = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (isBlack(display, x, y)) {
        if (std::chrono::steady_clock::now() > clearBy) {
            std::fprintf(stderr, "first_frame_probe: the pixel is black before the start\n");
            return 2;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        // Its output is not the probe's answer.
        const int quiet = open("/dev/null", O_WRONLY);
        dup2(quiet, STDOUT_FILENO);
        dup2(quiet, STDERR_FILENO);
        execvp(argv[3], argv + 3);
        _exit(127);
    }
    const auto deadline = start + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
        if (isBlack(display, x, y)) {
            const auto elapsed =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start);
            std::printf("%.0f %d\n", elapsed.count(), child);
            return 0;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    std::printf("timeout %d\n", child);
    return 1;
}
