// Plays the desktop's bell sound, or rings the X server's bell if that cannot be played.
#pragma once

#include "platform/AlertSound.h"

#include <QObject>
#include <QTimer>

struct ca_context;

/// Starts each sound in its own thread, because a sound server that hangs would block the caller.
class CanberraAlertSound : public QObject, public AlertSound
{
    Q_OBJECT

public:
    CanberraAlertSound();

    /// Does nothing while a sound is under way; if that sound hangs, rings the X server's bell.
    void beep() override;

private:
    /// May be called in any thread; passes the result to the main thread.
    void finished(int result);
    void begin();

    /// Created for the first sound and kept: destroying it while a sound ends crashes the library.
    ca_context *m_context = nullptr;
    bool m_isPlaying = false;
    QTimer m_patience;
};
