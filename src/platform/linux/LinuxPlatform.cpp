#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/activation/PlasmaOpenWindows.h"
#include "platform/linux/activation/X11OpenWindows.h"
#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/base/Session.h"
#include "platform/linux/desktopkeys/GSettingsKeys.h"
#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"
#include "platform/linux/desktopkeys/LxqtKeys.h"
#include "platform/linux/desktopkeys/XfconfKeys.h"
#include "platform/linux/hotkeys/DBusKGlobalAccel.h"
#include "platform/linux/hotkeys/KGlobalAccelRoute.h"
#include "platform/linux/layout/WaylandKeyboardLayout.h"
#include "platform/linux/layout/X11KeyboardLayout.h"

#include <QGuiApplication>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
/// The reader of the current desktop's shortcuts; null if the desktop is unknown.
std::unique_ptr<DesktopKeys> makeDesktopKeys(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    if (!desktop)
        return nullptr;
    switch (*desktop) {
    case Desktop::gnome:
    case Desktop::budgie:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::gnome);
    case Desktop::plasma:
        return std::make_unique<KGlobalAccelKeys>();
    case Desktop::xfce:
        return std::make_unique<XfconfKeys>();
    case Desktop::cinnamon:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::cinnamon);
    case Desktop::mate:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::mate);
    case Desktop::lxqt:
        return std::make_unique<LxqtKeys>();
    }
    Q_UNREACHABLE();
}

/// Plasma 5 and 6 name their version in the session's environment (not tried on 6).
PlasmaVersion plasmaVersion()
{
    return qEnvironmentVariable("KDE_SESSION_VERSION") == u"5" ? PlasmaVersion::five
                                                               : PlasmaVersion::six;
}

std::unique_ptr<KeyboardLayout> makeKeyboardLayout(bool isOnX11)
{
    if (isOnX11)
        return std::make_unique<X11KeyboardLayout>();
    const auto desktop = currentDesktop(QProcessEnvironment::systemEnvironment());
    return std::make_unique<WaylandKeyboardLayout>(
        desktop == Desktop::plasma ? std::make_unique<PlasmaLayout>() : nullptr);
}

std::unique_ptr<WaylandHotkeyService> makeWaylandHotkeys(HotkeyWay way,
                                                         const KeyboardLayout &layout,
                                                         ActivationTokens &tokens,
                                                         UserActivation &activation)
{
    if (way != HotkeyWay::plasma)
        return nullptr;
    auto route = std::make_unique<KGlobalAccelRoute>(std::make_unique<DBusKGlobalAccel>(), layout,
                                                     plasmaVersion(),
                                                     [&tokens] { return tokens.request(); });
    return std::make_unique<WaylandHotkeyService>(std::move(route), activation);
}

/// Null if the session does not show its windows.
std::unique_ptr<OpenWindows> makeOpenWindows(HotkeyWay way, const ActivationTokens &tokens,
                                             const UserActivation &activation)
{
    if (way == HotkeyWay::x11)
        return std::make_unique<X11OpenWindows>(activation);
    if (way == HotkeyWay::plasma)
        return std::make_unique<PlasmaOpenWindows>(tokens);
    return nullptr;
}

QString nameOf(HotkeyWay way, bool works)
{
    if (!works)
        return u"none; use Copy Command"_s;
    return way == HotkeyWay::x11 ? u"X11"_s : u"Plasma"_s;
}

/// Refreshes when the user returns from another program, where keys may have been reassigned.
void refreshWhenUserComesBack(LinuxSymbolicHotkeys &symbolicHotkeys)
{
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &symbolicHotkeys,
                     [&symbolicHotkeys](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             symbolicHotkeys.refresh();
                     });
}
} // namespace

Result<std::unique_ptr<LinuxPlatform>> LinuxPlatform::make()
{
    const auto environment = QProcessEnvironment::systemEnvironment();
    const HotkeyWay way = chooseHotkeyWay(environment);
    switch (sessionType(environment)) {
    case SessionType::x11: {
        auto x11 = std::make_unique<X11Connection>();
        if (!x11->isOpen())
            return Error{
                u"cannot connect to the X display %1"_s.arg(environment.value(u"DISPLAY"_s))};
        return std::unique_ptr<LinuxPlatform>(new LinuxPlatform(way, std::move(x11)));
    }
    case SessionType::wayland: {
        const QString socket = waylandSocketPath(environment);
        if (!acceptsConnections(socket))
            return Error{u"cannot connect to the Wayland compositor at %1"_s.arg(socket)};
        return std::unique_ptr<LinuxPlatform>(new LinuxPlatform(way, nullptr));
    }
    case SessionType::none:
        break;
    }
    return Error{u"there is no display; start it in a desktop session"_s};
}

LinuxPlatform::LinuxPlatform(HotkeyWay hotkeyWay, std::unique_ptr<X11Connection> x11)
    : m_x11(std::move(x11))
    , m_x11Hotkeys(m_x11 && m_x11->hasXkb()
                       ? std::make_unique<X11HotkeyService>(*m_x11, m_activation)
                       : nullptr)
    , m_grabProbe(m_x11Hotkeys ? std::make_unique<GrabProbe>(*m_x11Hotkeys) : nullptr)
    , m_keyboardLayout(makeKeyboardLayout(m_x11 != nullptr))
    , m_waylandHotkeys(
          makeWaylandHotkeys(hotkeyWay, *m_keyboardLayout, m_activationTokens, m_activation))
    , m_symbolicHotkeys(makeDesktopKeys(QProcessEnvironment::systemEnvironment()),
                        *m_keyboardLayout, takenKeys())
    , m_userDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                     + u"/Corvane/Corvane.conf"_s)
    , m_workspace(m_activation, makeOpenWindows(hotkeyWay, m_activationTokens, m_activation))
    , m_notifications(applicationId, applicationId)
    , m_loginItem(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                      + u"/autostart"_s,
                  runningProgram())
    , m_wording(QProcessEnvironment::systemEnvironment(), *m_keyboardLayout,
                nameOf(hotkeyWay, m_x11Hotkeys || m_waylandHotkeys))
    , m_services{
          .hotkeys = hotkeys(),
          .symbolicHotkeys = m_symbolicHotkeys,
          .userDefaults = m_userDefaults,
          .workspace = m_workspace,
          .notifications = m_notifications,
          .alertSound = m_alertSound,
          .statusBar = m_statusBar,
          .application = m_application,
          .eventMonitor = m_eventMonitor,
          .installedApplications = m_installedApplications,
          .shortcutLibrary = m_shortcutLibrary,
          .loginItem = m_loginItem,
          .systemSettings = m_systemSettings,
          .appearance = m_appearance,
          .wording = m_wording,
          .applicationSupport =
              QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
          .bundleIdentifier = applicationId,
      }
{
}

HotkeyService &LinuxPlatform::hotkeys()
{
    if (m_x11Hotkeys)
        return *m_x11Hotkeys;
    if (m_waylandHotkeys)
        return *m_waylandHotkeys;
    return m_absentHotkeys;
}

TakenKeys *LinuxPlatform::takenKeys()
{
    if (m_waylandHotkeys)
        return &m_waylandHotkeys->route();
    return m_grabProbe.get();
}

std::optional<QString> LinuxPlatform::hotkeysNotice() const
{
    if (m_x11Hotkeys || m_waylandHotkeys)
        return std::nullopt;
    return m_x11 ? u"key combinations do not work: the X server has no XKEYBOARD extension"_s
                 : u"key combinations do not work: this desktop does not let apps register them"_s;
}

void LinuxPlatform::flushHotkeys()
{
    if (m_x11Hotkeys)
        m_x11Hotkeys->flush();
    if (m_waylandHotkeys)
        m_waylandHotkeys->flush();
}

void LinuxPlatform::attachToEventLoop()
{
    if (m_x11Hotkeys)
        m_x11Hotkeys->attachToEventLoop();
    if (m_waylandHotkeys) {
        m_activationTokens.start();
        m_waylandHotkeys->route().start();
    }
    if (qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        qGuiApp->installEventFilter(&m_misjudgedRepeats);
    refreshWhenUserComesBack(m_symbolicHotkeys);
    m_appearance.start();
    // Queued, so that this does not delay the tray item.
    QMetaObject::invokeMethod(m_keyboardLayout.get(), &KeyboardLayout::start, Qt::QueuedConnection);
    QMetaObject::invokeMethod(
        qGuiApp, [this] { m_workspace.start(); }, Qt::QueuedConnection);
}

void LinuxPlatform::end()
{
    if (m_waylandHotkeys)
        m_waylandHotkeys->route().letGo();
}
