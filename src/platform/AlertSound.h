// The sound by which the system calls for attention.
#pragma once

class AlertSound
{
public:
    virtual ~AlertSound() = default;

    /// Begins to play and returns at once. A failure is silent.
    virtual void beep() = 0;
};
