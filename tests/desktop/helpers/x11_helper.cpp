// Small X clients the desktop tests need and no Debian tool provides:
//   owner ATOM              exit 0 when the selection ATOM has an owner (readiness of a
//                           compositor, a tray host), 1 otherwise
//   grab-key                hold Control+Alt+L like a rival program; prints "grabbed" (or "failed"
//                           and exits 1), then "pressed" on every press it receives
//   key-free                exit 0 when Control+Alt+L could be grabbed right now (and let it go)
//   clickpad X Y W H        an unmanaged window there; prints "mapped", then "click X Y" (root
//                           coordinates) on every button press it receives
//   background RRGGBB       paint the root in one colour in a way compositors see (a root pixmap
//                           announced in _XROOTPMAP_ID; xsetroot's plain colour is drawn over)
//   window INSTANCE CLASS   an ordinary window with that WM_CLASS, as an application's; prints
//                           "mapped"
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

bool grabFailed = false;

int recordError(Display*, XErrorEvent* error)
{
    if (error->error_code == BadAccess) {
        grabFailed = true;
    }
    return 0;
}

int owner(Display* display, const char* name)
{
    const Atom atom = XInternAtom(display, name, False);
    return XGetSelectionOwner(display, atom) != None ? 0 : 1;
}

int grabKey(Display* display, bool probeOnly)
{
    const Window root = DefaultRootWindow(display);
    const KeyCode key = XKeysymToKeycode(display, XK_l);
    XSetErrorHandler(recordError);
    for (unsigned locks :
         {0u, unsigned(Mod2Mask), unsigned(LockMask), unsigned(Mod2Mask | LockMask)}) {
        XGrabKey(display, key, ControlMask | Mod1Mask | locks, root, False, GrabModeAsync,
                 GrabModeAsync);
    }
    XSync(display, False);
    if (grabFailed) {
        std::puts("failed");
        return 1;
    }
    if (probeOnly) {
        XUngrabKey(display, key, AnyModifier, root);
        XSync(display, False);
        return 0;
    }
    std::puts("grabbed");
    std::fflush(stdout);
    for (;;) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == KeyPress) {
            std::puts("pressed");
            std::fflush(stdout);
        }
    }
}

int clickpad(Display* display, int x, int y, unsigned width, unsigned height)
{
    XSetWindowAttributes attributes{};
    attributes.override_redirect = True;
    attributes.background_pixel = 0x808080;
    attributes.event_mask = ButtonPressMask | StructureNotifyMask;
    const Window window = XCreateWindow(
        display, DefaultRootWindow(display), x, y, width, height, 0, CopyFromParent, InputOutput,
        CopyFromParent, CWOverrideRedirect | CWBackPixel | CWEventMask, &attributes);
    XMapWindow(display, window);
    for (;;) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapNotify) {
            std::puts("mapped");
        } else if (event.type == ButtonPress) {
            std::printf("click %d %d\n", event.xbutton.x_root, event.xbutton.y_root);
        }
        std::fflush(stdout);
    }
}

int background(Display* display, const char* hex)
{
    const unsigned long rgb = std::strtoul(hex, nullptr, 16);
    const Window root = DefaultRootWindow(display);
    const int screen = DefaultScreen(display);
    const Pixmap pixmap =
        XCreatePixmap(display, root, 1, 1, unsigned(DefaultDepth(display, screen)));
    XGCValues values{};
    values.foreground = rgb; // TrueColor 24-bit: the pixel value is the colour
    const GC gc = XCreateGC(display, pixmap, GCForeground, &values);
    XFillRectangle(display, pixmap, gc, 0, 0, 1, 1);
    XFreeGC(display, gc);
    XSetWindowBackgroundPixmap(display, root, pixmap);
    XClearWindow(display, root);
    const Atom property = XInternAtom(display, "_XROOTPMAP_ID", False);
    XChangeProperty(display, root, property, XA_PIXMAP, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&pixmap), 1);
    // The pixmap must outlive this short-lived client.
    XSetCloseDownMode(display, RetainPermanent);
    XCloseDisplay(display);
    return 0;
}

int window(Display* display, char* instance, char* className)
{
    const Window window = XCreateSimpleWindow(display, DefaultRootWindow(display), 200, 300, 400,
                                              200, 0, 0, 0xe0e0e0);
    XClassHint hint{instance, className};
    XSetClassHint(display, window, &hint);
    XStoreName(display, window, className);
    XSelectInput(display, window, StructureNotifyMask);
    XMapWindow(display, window);
    for (;;) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapNotify) {
            std::puts("mapped");
            std::fflush(stdout);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "x11_helper: cannot open the display\n");
        return 2;
    }
    if (argc == 3 && std::strcmp(argv[1], "owner") == 0) {
        return owner(display, argv[2]);
    }
    if (argc == 2 && std::strcmp(argv[1], "grab-key") == 0) {
        return grabKey(display, false);
    }
    if (argc == 2 && std::strcmp(argv[1], "key-free") == 0) {
        return grabKey(display, true);
    }
    if (argc == 6 && std::strcmp(argv[1], "clickpad") == 0) {
        return clickpad(display, std::atoi(argv[2]), std::atoi(argv[3]),
                        unsigned(std::atoi(argv[4])), unsigned(std::atoi(argv[5])));
    }
    if (argc == 3 && std::strcmp(argv[1], "background") == 0) {
        return background(display, argv[2]);
    }
    if (argc == 4 && std::strcmp(argv[1], "window") == 0) {
        return window(display, argv[2], argv[3]);
    }
    std::fprintf(stderr, "usage: x11_helper owner ATOM | grab-key | key-free | clickpad X Y W H | "
                         "background RRGGBB | window INSTANCE CLASS\n");
    return 2;
}
