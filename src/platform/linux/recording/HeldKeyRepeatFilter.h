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
    /// To be told of each press and release that is kept from the program's windows. True for a
    /// press that the user made, false for repeats and releases.
    bool follow(const QKeyEvent &event);

    /// From now on the keys that are down are kept from the windows until they are let go. Fresh
    /// presses go their way.
    void swallowRepeats();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isRest(const QKeyEvent &event);
    bool isMisjudgedRepeat(const QKeyEvent &press) const;
    void letGo(const QKeyEvent &event);

    /// What each key that is down types.
    QHash<XKeycode, int> m_keys;
    /// The last release and its time, which is 0 for events that have none.
    XKeycode m_releasedKey{};
    quint64 m_releaseTime = 0;
};
