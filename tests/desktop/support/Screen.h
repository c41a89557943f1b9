// What is to be seen on the screen of the X server.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QtGlobal>
#include <optional>
#include <xcb/xcb.h>

class Screen
{
public:
    Screen();
    ~Screen();
    Q_DISABLE_COPY_MOVE(Screen)

    QRect geometry() const;

    QImage picture(const QRect &place) const;

    /// The windows that lie directly on the screen, the lowest first; without those that are not
    /// to be seen.
    QList<QRect> windows() const;

private:
    std::optional<QRect> placeOf(xcb_window_t window) const;

    xcb_connection_t *m_connection;
    xcb_screen_t *m_screen;
};

/// By how much the lightest pixel is brighter than the darkest one, up to 255.
int contrast(const QImage &picture);
