// A hot key service that records what is registered, and refuses what it is told to refuse.
#pragma once

#include "fakes/CallLog.h"
#include "platform/HotkeyService.h"

#include <QList>
#include <QSet>

class FakeHotkeyService : public HotkeyService
{
public:
    struct Live {
        quint32 keyCode;
        quint32 modifiers;
        HotkeyId id;

        bool operator==(const Live &) const = default;
    };

    explicit FakeHotkeyService(CallLog log = CallLog())
        : m_log(log)
    {
    }

    void installHandler(std::function<void(HotkeyId)> handler) override
    {
        ++installations;
        m_handler = std::move(handler);
    }

    std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                               HotkeyId id) override
    {
        ++attempts;
        if (refusedKeyCodes.contains(keyCode))
            return std::nullopt;
        const Live registered{keyCode, modifiers, id};
        live.append(registered);
        m_log.note(QStringLiteral("register %1").arg(keyCode));
        return Registration([this, registered] {
            live.removeOne(registered);
            m_log.note(QStringLiteral("unregister %1").arg(registered.keyCode));
        });
    }

    void press(HotkeyId id) { m_handler(id); }

    /// What is registered, in the order of registration; the later ones of the same keys wait.
    QList<Live> live;
    QSet<quint32> refusedKeyCodes;
    int attempts = 0;
    int installations = 0;

private:
    CallLog m_log;
    std::function<void(HotkeyId)> m_handler;
};
