// The system's alert sound.
#pragma once

class AlertSound
{
public:
    virtual ~AlertSound() = default;

    /// Starts the sound and returns at once. A failure is silent.
    virtual void beep() = 0;
};
