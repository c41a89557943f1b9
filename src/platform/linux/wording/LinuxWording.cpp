#include "platform/linux/wording/LinuxWording.h"

#include "foundation/Text.h"
#include "platform/KeyModifier.h"
#include "platform/KeyUser.h"
#include "platform/linux/base/Session.h"
#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/wording/KeyNames.h"

using namespace Qt::StringLiterals;

namespace
{
const QString anyDesktop = u"your desktop"_s;

/// A longer name would fill most of a warning. Commands differ in their beginning and their end, so
/// both are shown.
constexpr qsizetype maxActionLength = 40;

QString superKeyName(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    return desktop == Desktop::plasma || desktop == Desktop::lxqt ? u"Meta"_s : u"Super"_s;
}
} // namespace

LinuxWording::LinuxWording(const QProcessEnvironment &environment, const KeyboardLayout &layout,
                           const QString &hotkeyMethod)
    : m_layout(layout)
    , m_desktop(currentDesktopName(environment).value_or(anyDesktop))
    , m_super(superKeyName(environment))
    , m_whatSuperOpens(currentDesktop(environment) == Desktop::cinnamon ? u"menu"_s : u"overview"_s)
    , m_hotkeyMethod(hotkeyMethod)
{
    connect(&layout, &KeyboardLayout::labelsChanged, this, &Wording::changed);
}

QString LinuxWording::keys(qint64 keyCode, qint64 modifiers) const
{
    QString text;
    if (modifiers & commandKey)
        text += m_super + u'+';
    if (modifiers & controlKey)
        text += u"Ctrl+";
    if (modifiers & optionKey)
        text += u"Alt+";
    if (modifiers & shiftKey)
        text += u"Shift+";
    const QString label = m_layout.labels().label(keyCode);
    return text + (label.isEmpty() ? keyName(keyCode) : label);
}

QString LinuxWording::requiredModifiers() const
{
    return m_super + u", Ctrl or Alt"_s;
}

QString LinuxWording::alreadyUsed(const QString &keys, const KeyUser &user) const
{
    if (user.kind == KeyUser::Kind::superKey)
        return u"%1 does not reach apps on %2 while the %3 key alone opens the %4."_s.arg(
            keys, m_desktop, m_super, m_whatSuperOpens);
    return keys + u" is already used by "_s + nameOf(user) + u". It may not work."_s;
}

QString LinuxWording::nameOf(const KeyUser &user) const
{
    if (user.kind == KeyUser::Kind::program)
        return u"another program"_s;
    const QString action = onOneLine(withoutDirections(user.action.value_or(QString()))).trimmed();
    return action.isEmpty() ? m_desktop
                            : m_desktop + u" ("_s + withoutMiddle(action, maxActionLength) + u')';
}

QString LinuxWording::couldNotOpen(const QString &target) const
{
    return u"Your desktop could not open "_s + target + u'.';
}

QString LinuxWording::couldNotRunShortcuts() const
{
    return u"No program on your computer runs Shortcuts."_s;
}

QString LinuxWording::computer() const
{
    return u"computer"_s;
}

QString LinuxWording::system() const
{
    return anyDesktop;
}

QString LinuxWording::loginItemIsOff() const
{
    return u"Switched off in your desktop's startup applications."_s;
}

QString LinuxWording::openLoginItems() const
{
    return u"Open Startup Applications"_s;
}

QString LinuxWording::nameOfShortcut() const
{
    return u"Name of the Shortcut, as in your shortcuts folder"_s;
}

std::optional<QString> LinuxWording::version() const
{
    return QStringLiteral(CORVANE_VERSION);
}

QString LinuxWording::credits() const
{
    return u"Key combinations: "_s + m_hotkeyMethod
        + u"\nBuilt with Qt, GLib, xcb, xkbcommon, wayland, libcanberra and nlohmann-json."_s;
}
