// What presses real keys, whatever the desktop's display is.
#pragma once

#include <QList>
#include <QSet>
#include <linux/input-event-codes.h>

/// Keys are named by evdev code, as they are counted on Linux.
class KeyPresser
{
public:
    KeyPresser() = default;
    virtual ~KeyPresser() = default;
    Q_DISABLE_COPY_MOVE(KeyPresser)

    /// Pressed in their order, let go in the opposite one.
    void press(const QList<int> &keys)
    {
        for (const int key : keys) {
            down(key);
            m_down.insert(key);
        }
    }
    void release(const QList<int> &keys)
    {
        for (auto key = keys.crbegin(); key != keys.crend(); ++key) {
            up(*key);
            m_down.remove(*key);
        }
    }
    void type(const QList<int> &keys)
    {
        press(keys);
        release(keys);
    }

    /// Awaits that the display has processed what was done with the keys so far.
    virtual void sync() const = 0;

protected:
    /// Leaves no key down for the next test; to be called by destructors.
    void releaseAll() { release(m_down.values()); }

private:
    virtual void down(int key) = 0;
    virtual void up(int key) = 0;

    QSet<int> m_down;
};
