// Finds out on demand which key combinations other programs have grabbed at the X server.
#pragma once

#include "platform/linux/hotkeys/TakenKeys.h"
#include "platform/linux/hotkeys/X11HotkeyService.h"

#include <map>
#include <set>

/// For registered combinations the hot key service knows the answer. Others are probed together in
/// the next turn of the event loop, and then not again until invalidate(): a probe might intercept
/// a press.
class GrabProbe : public TakenKeys
{
    Q_OBJECT

public:
    /// The service must outlive it.
    explicit GrabProbe(X11HotkeyService &service);

    bool isHeldElsewhere(VirtualKey key, quint32 modifiers) override;

    /// Probes combinations again when they are next asked for.
    void invalidate() override;

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
