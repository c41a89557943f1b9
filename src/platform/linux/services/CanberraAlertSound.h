// The desktop's bell sound, or the X server's bell where that cannot be played.
#pragma once

#include "platform/AlertSound.h"

#include <QObject>
#include <QTimer>

struct ca_context;

/// A sound server that hangs would hang us as well, so that each sound is begun in a thread of its
/// own.
class CanberraAlertSound : public QObject, public AlertSound
{
    Q_OBJECT

public:
    CanberraAlertSound();

    /// While one sound is under way, a further one is none.
    void beep() override;

private:
    /// In any thread: takes the result to the main one.
    void finished(int result);
    void begin();

    /// Made for the first sound and kept: to end it while a sound ends crashes the library.
    ca_context *m_context = nullptr;
    bool m_isPlaying = false;
    QTimer m_patience;
};
