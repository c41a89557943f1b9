#include "words/DesignWording.h"

#include "hotkeys/KeyboardShortcuts.h"

using namespace Qt::StringLiterals;

QString DesignWording::keys(qint64 keyCode, qint64 modifiers) const
{
    return KeyboardShortcuts::Shortcut{keyCode, modifiers}.description();
}

QString DesignWording::requiredModifiers() const
{
    return u"⌘, ⌥ or ⌃"_s;
}

QString DesignWording::alreadyUsed(const QString &keys, const KeyUser &) const
{
    return keys + u" is already used by macOS. It may not work."_s;
}

QString DesignWording::couldNotOpen(const QString &target) const
{
    return u"macOS could not open %1."_s.arg(target);
}

QString DesignWording::couldNotRunShortcuts() const
{
    return couldNotOpen(u"the Shortcuts app"_s);
}

QString DesignWording::computer() const
{
    return u"Mac"_s;
}

QString DesignWording::system() const
{
    return u"macOS"_s;
}

QString DesignWording::loginItemIsOff() const
{
    return u"macOS needs your approval in Login Items."_s;
}

QString DesignWording::openLoginItems() const
{
    return u"Open Login Items"_s;
}

QString DesignWording::nameOfShortcut() const
{
    return u"Name of the Shortcut, exactly as in the Shortcuts app"_s;
}

std::optional<QString> DesignWording::version() const
{
    return std::nullopt;
}

QString DesignWording::credits() const
{
    return u"Global hotkeys use Apple's Carbon hot key API. No third-party code is included."_s;
}
