// Waiting for a Wayland compositor's events.
#pragma once

#include <QDeadlineTimer>
#include <poll.h>
#include <wayland-client.h>

/// Handles the events of the queue that arrive next. Returns false if none came in time or the
/// connection is lost.
inline bool handleNextEvents(wl_display *display, wl_event_queue *queue, QDeadlineTimer deadline)
{
    if (wl_display_prepare_read_queue(display, queue) == 0) {
        wl_display_flush(display);
        pollfd connection{wl_display_get_fd(display), POLLIN, 0};
        if (poll(&connection, 1, int(deadline.remainingTime())) <= 0) {
            wl_display_cancel_read(display);
            return false;
        }
        if (wl_display_read_events(display) < 0)
            return false;
    }
    return wl_display_dispatch_queue_pending(display, queue) >= 0;
}
