// What the X server says of its keyboard: where the physical keys are, and which bit each modifier
// has.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QtGlobal>
#include <array>
#include <optional>
#include <xcb/xcb.h>

class X11Connection;
namespace KeyCodes
{
struct PhysicalKey;
}

class X11Keyboard
{
public:
    /// A keyboard without keys and modifiers.
    X11Keyboard() = default;

    /// One round trip.
    static X11Keyboard read(const X11Connection &connection);

    /// The X key codes of a virtual key code; none if this keyboard has no such key.
    QList<xcb_keycode_t> keys(quint32 virtualKeyCode) const;

    /// The virtual key code of an X key code; nothing if that key has none.
    std::optional<quint16> virtualKeyCode(xcb_keycode_t key) const
    {
        return m_virtualKeyCodes[key];
    }

    /// The X modifier bits of a mask of KeyModifier bits, other bits aside;
    /// nothing if this keyboard lacks one of the modifiers.
    std::optional<quint16> modifiers(quint32 mask) const;

    /// The modifiers with each mix of the lock modifiers (Caps, Num and Scroll Lock) that this
    /// keyboard has, the one without any included.
    QList<quint16> lockVariants(quint16 modifiers) const;

    /// What a press's state says of the four modifiers that combinations are made of.
    quint16 combinationModifiers(quint16 state) const;

    /// The same as EventFlag bits.
    quint32 eventFlags(quint16 state) const;

private:
    void readKeyNames(xcb_connection_t *connection, unsigned int sequence);
    void findVirtualKeyCodes();
    void readModifiers(xcb_connection_t *connection, unsigned int mapSequence,
                       unsigned int keysSequence);

    std::optional<xcb_keycode_t> find(const KeyCodes::PhysicalKey &key) const;

    QHash<QByteArray, xcb_keycode_t> m_keysByName;
    std::array<std::optional<quint16>, 256> m_virtualKeyCodes;
    xcb_keycode_t m_firstKey = 0;
    xcb_keycode_t m_lastKey = 0;
    quint16 m_command = 0;
    quint16 m_option = 0;
    quint16 m_locks = 0;
};
