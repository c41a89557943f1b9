// An alert sound that is counted and not heard.
#pragma once

#include "fakes/CallLog.h"
#include "platform/AlertSound.h"

class FakeAlertSound : public AlertSound
{
public:
    explicit FakeAlertSound(CallLog log = CallLog())
        : m_log(log)
    {
    }

    void beep() override
    {
        ++beeps;
        m_log.note(QStringLiteral("beep"));
    }

    int beeps = 0;

private:
    CallLog m_log;
};
