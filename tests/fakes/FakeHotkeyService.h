// A hot key service that records what is registered, and refuses what it is told to refuse.
#pragma once

#include "fakes/CallLog.h"
#include "platform/HotkeyService.h"

#include <QHash>
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

    std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyId id,
                                               const HotkeyPurpose &purpose) override
    {
        ++attempts;
        titles.insert(purpose.name, purpose.title);
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

    HotkeyReach reach() const override { return m_reach; }
    std::optional<HotkeyKeys> otherKeys(quint32 keyCode, quint32) const override
    {
        const auto found = m_otherKeys.constFind(keyCode);
        return found == m_otherKeys.cend() ? std::nullopt : std::optional(*found);
    }

    void setReach(HotkeyReach reach)
    {
        m_reach = reach;
        Q_EMIT changed();
    }
    void setOtherKeys(quint32 keyCode, HotkeyKeys keys)
    {
        m_otherKeys.insert(keyCode, keys);
        Q_EMIT changed();
    }

    void press(HotkeyId id) { m_handler(id); }

    /// What is registered, in the order of registration; the later ones of the same keys wait.
    QList<Live> live;
    /// The title of each name at its last registration.
    QHash<QString, QString> titles;
    QSet<quint32> refusedKeyCodes;
    int attempts = 0;
    int installations = 0;

private:
    CallLog m_log;
    std::function<void(HotkeyId)> m_handler;
    HotkeyReach m_reach = HotkeyReach::registered;
    QHash<quint32, HotkeyKeys> m_otherKeys;
};
