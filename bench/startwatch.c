/* Starts a program on an X display and reports, as one line, the time from
 * its start to the first window mapped on the screen and the peak resident
 * memory of the whole process (its own and every thread's), measured from
 * outside so that any program compares alike:
 *     startwatch SECONDS PROGRAM [ARGS...]
 *     -> "mapped_ms 81.2 peak_rss_kib 39120"
 * The program runs until it exits or SECONDS have passed (then it is sent
 * SIGTERM). Nothing else may map windows on that display meanwhile. */
#define _GNU_SOURCE
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <xcb/xcb.h>

static double now_ms(void)
{
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

static int watch_root(xcb_connection_t* c)
{
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_void_cookie_t cookie = xcb_change_window_attributes_checked(c, screen->root, XCB_CW_EVENT_MASK, &mask);
    xcb_generic_error_t* error = xcb_request_check(c, cookie);
    free(error);
    return error == NULL;
}

int main(int argc, char** argv)
{
    if (argc < 3) {
        fprintf(stderr, "usage: startwatch SECONDS PROGRAM [ARGS...]\n");
        return 2;
    }
    const double limit_ms = atof(argv[1]) * 1e3;
    xcb_connection_t* c = xcb_connect(NULL, NULL);
    if (xcb_connection_has_error(c) || !watch_root(c)) {
        fprintf(stderr, "startwatch: cannot watch the display\n");
        return 2;
    }
    const double start = now_ms();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    double mapped = -1;
    int status = 0;
    struct rusage usage;
    for (;;) {
        xcb_generic_event_t* event;
        while (mapped < 0 && (event = xcb_poll_for_event(c)) != NULL) {
            if ((event->response_type & 0x7f) == XCB_MAP_NOTIFY)
                mapped = now_ms() - start;
            free(event);
        }
        if (wait4(child, &status, WNOHANG, &usage) == child)
            break;
        if (now_ms() - start > limit_ms)
            kill(child, SIGTERM);
        usleep(500);
    }
    printf("mapped_ms %.1f peak_rss_kib %ld\n", mapped, usage.ru_maxrss);
    return 0;
}
