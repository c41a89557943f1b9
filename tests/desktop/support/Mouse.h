// A mouse that moves the real pointer of the X server and clicks.
#pragma once

#include <QPoint>
#include <Qt>
#include <QtGlobal>
#include <xcb/xcb.h>

class Mouse
{
public:
    Mouse();
    ~Mouse();
    Q_DISABLE_COPY_MOVE(Mouse)

    /// To a place of the screen.
    void moveTo(const QPoint &place);

    /// Moves there and clicks.
    void click(const QPoint &place, Qt::MouseButton button = Qt::LeftButton);

    /// Holds the left button down, or lets go of it, where the pointer is.
    void press();
    void release();

    /// Holds the left button down all the way.
    void drag(const QPoint &from, const QPoint &to);

private:
    void fake(quint8 eventType, quint8 detail, const QPoint &place = {});

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};
