// A keyboard that presses real keys on the X server.
#pragma once

#include "support/KeyPresser.h"

#include <QString>
#include <QtGlobal>
#include <xcb/xcb.h>

class Keyboard : public KeyPresser
{
public:
    Keyboard();
    /// Lets go of all keys.
    ~Keyboard() override;

    /// Types letters, digits and signs of ASCII, as they are on a keyboard of the United States.
    void write(const QString &text);

    /// Turns exactly these lock modifiers on, as X modifier bits, and all others off.
    void setLocks(quint16 modifiers);

    /// Switches to one of the groups of the layout, counted from 0.
    void setGroup(quint8 group);

    /// Whether any program holds a grab of the key with exactly these X modifier bits.
    bool isGrabbed(int key, quint16 modifiers) const;

    /// Takes the key with exactly these X modifier bits for itself, as another program would.
    void grab(int key, quint16 modifiers);

    /// Takes all keys for itself, as a screen locker would. False if another program has them.
    bool grabAll();
    void ungrabAll();

    /// Sends the window a repeat of a held key as a busy machine does: the press follows when the
    /// program has processed the release.
    void sendLateRepeat(int key, xcb_window_t window) const;

    bool isDown(int key) const;

    void sync() const override;

private:
    void down(int key) override;
    void up(int key) override;
    void fake(quint8 eventType, int key);
    void send(quint8 eventType, int key, xcb_timestamp_t time, xcb_window_t window) const;
    void awaitEventLoop(xcb_window_t window) const;

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    int m_lastReleased = 0;
};
