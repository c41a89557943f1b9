// Swallows the auto-repeats of keys that are still held when a recording ends.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QHash>
#include <QObject>

class QKeyEvent;

class HeldKeyRepeatFilter final : public QObject
{
    Q_OBJECT

public:
    /// Call it for each press and release that is kept from the program's windows. True for a press
    /// that the user made, false for repeats and releases.
    bool follow(const QKeyEvent &event);

    /// From now on, keeps the keys that are down from the windows until they are released. Fresh
    /// presses pass.
    void swallowRepeats();

    bool hasHeldKeys() const { return !m_keys.isEmpty(); }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// Emitted when the last of the keys that were followed is up.
    void allKeysUp();

private:
    bool isRest(const QKeyEvent &event);
    void forget(XKeycode key);

    /// The Qt key that each key that is down stands for.
    QHash<XKeycode, int> m_keys;
};
