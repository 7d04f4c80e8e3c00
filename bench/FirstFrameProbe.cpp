// first_frame_probe X Y COMMAND...: starts COMMAND and prints how many milliseconds pass until the
// pixel at (X, Y) of the root window turns black (the notch's first frame), then the command's
// pid. The command keeps running. Exit status 1 when nothing is drawn within 30 seconds.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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
    if (isBlack(display, x, y)) {
        std::fprintf(stderr, "first_frame_probe: the pixel is black before the start\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
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
