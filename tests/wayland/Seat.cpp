// A seat for weston's headless backend, which has none, and without one its kiosk shell shows no window.
// Loaded into weston as a module. Each line "X Y" that comes through the pipe ITORV_TOUCHES is one touch
// there.
#include <fcntl.h>
#include <libweston/libweston.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

// Exported by weston's library for its backends; their header is not installed.
extern "C" {
struct weston_touch_device;
void weston_seat_init(weston_seat* seat, weston_compositor* compositor, const char* name);
int weston_seat_init_keyboard(weston_seat* seat, xkb_keymap* keymap);
int weston_seat_init_touch(weston_seat* seat);
weston_touch_device* weston_touch_create_touch_device(weston_touch* touch, const char* path, void* data,
                                                      const void* operations);
void notify_touch_normalized(weston_touch_device* device, const std::timespec* time, int id, double x,
                             double y, const void* normalized, int type);
void notify_touch_frame(weston_touch_device* device);
int wet_module_init(weston_compositor* compositor, int* argc, char** argv);
}

namespace {

weston_touch_device* device = nullptr;

void touch(int type, double x, double y) {
    std::timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    notify_touch_normalized(device, &now, 0, x, y, nullptr, type);
    notify_touch_frame(device);
}

int readTouches(int pipe, std::uint32_t, void*) {
    char line[128]{};
    double x = 0;
    double y = 0;
    if (read(pipe, line, sizeof line - 1) <= 0 || std::sscanf(line, "%lf %lf", &x, &y) != 2) return 0;
    touch(WL_TOUCH_DOWN, x, y);
    touch(WL_TOUCH_UP, x, y);
    return 0;
}

}  // namespace

int wet_module_init(weston_compositor* compositor, int*, char**) {
    static weston_seat seat;
    weston_seat_init(&seat, compositor, "test");
    weston_seat_init_keyboard(&seat, nullptr);
    weston_seat_init_touch(&seat);
    device = weston_touch_create_touch_device(weston_seat_get_touch(&seat), "test", nullptr, nullptr);
    const auto* const path = std::getenv("ITORV_TOUCHES");
    const int pipe = path ? open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC) : -1;
    if (pipe < 0) return -1;
    wl_event_loop_add_fd(wl_display_get_event_loop(compositor->wl_display), pipe, WL_EVENT_READABLE,
                         readTouches, nullptr);
    return 0;
}
