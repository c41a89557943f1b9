// Which key combinations other programs hold at the X server, as far as somebody asks.
#pragma once

#include "platform/linux/hotkeys/X11HotkeyService.h"

#include <QObject>
#include <map>
#include <set>

/// Of combinations that are registered, their registration tells. Others are probed, on the next
/// turn of the event loop and all at once, and then no more until invalidate(): a probe might take
/// away a press.
class GrabProbe : public QObject
{
    Q_OBJECT

public:
    /// The service must outlive it.
    explicit GrabProbe(X11HotkeyService &service);

    /// As far as is known by now.
    bool isHeldElsewhere(VirtualKey key, quint32 modifiers);

    /// What is known may be out of date: asks for refused registrations once more, and probes
    /// again what is asked for from now on.
    void invalidate();

Q_SIGNALS:
    /// Some answers differ from what was told before, or may.
    void changed();

private:
    struct Answer {
        bool isHeld;
        bool isUpToDate;
    };

    void probe();

    X11HotkeyService &m_service;
    std::map<KeyCombination, Answer> m_answers;
    std::set<KeyCombination> m_questions;
};
