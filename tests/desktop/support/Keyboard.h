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

    bool isDown(int key) const;

    void sync() const override;

private:
    void down(int key) override;
    void up(int key) override;
    void fake(quint8 eventType, int key);

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};
