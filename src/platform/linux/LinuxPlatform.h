// Owns the services of the desktop session that the program was started in.
#pragma once

#include "platform/Platform.h"
#include "platform/linux/activation/ActivationTokens.h"
#include "platform/linux/activation/LinuxApplication.h"
#include "platform/linux/appearance/LinuxAppearance.h"
#include "platform/linux/desktopkeys/LinuxSymbolicHotkeys.h"
#include "platform/linux/hotkeys/AbsentHotkeyService.h"
#include "platform/linux/hotkeys/GrabProbe.h"
#include "platform/linux/hotkeys/HotkeyWay.h"
#include "platform/linux/hotkeys/WaylandHotkeyService.h"
#include "platform/linux/hotkeys/X11HotkeyService.h"
#include "platform/linux/launch/GioApplications.h"
#include "platform/linux/launch/LinuxWorkspace.h"
#include "platform/linux/recording/LinuxEventMonitor.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"
#include "platform/linux/services/AutostartLoginItem.h"
#include "platform/linux/services/CanberraAlertSound.h"
#include "platform/linux/services/DBusNotificationCenter.h"
#include "platform/linux/services/IniUserDefaults.h"
#include "platform/linux/services/LinuxSystemSettings.h"
#include "platform/linux/tray/LinuxStatusBar.h"
#include "platform/linux/wording/LinuxWording.h"
#include "platform/linux/x11/MisjudgedRepeats.h"
#include "platform/linux/x11/X11Connection.h"

#include <memory>
#include <optional>

class LinuxPlatform
{
public:
    /// Makes the services. The error says why the program cannot run here (without a display,
    /// QApplication would abort). Needs no QApplication yet.
    static Result<std::unique_ptr<LinuxPlatform>> make();

    const Platform &services() const { return m_services; }

    /// The user's latest action. Whoever hears of user actions must update it.
    UserActivation &userActivation() { return m_activation; }

    /// How held keys repeat in this session.
    KeyRepeat keyRepeat() const { return m_keyboardLayout->keyRepeat(); }

    /// Whether presses go to the recorder now.
    bool isRecording() const { return m_eventMonitor.isCapturing(); }

    /// A message for standard error if hot keys do not work in this session.
    std::optional<QString> hotkeysNotice() const;

    /// Applies all pending hot key registrations now.
    void flushHotkeys();

    /// To be called once, when QApplication exists.
    void attachToEventLoop();

    /// Gives up what the desktop would keep for us. To be called before the program ends; waits for
    /// 250 ms at most.
    void end();

private:
    /// Pass the connection in X11 sessions, else null.
    LinuxPlatform(HotkeyWay hotkeyWay, std::unique_ptr<X11Connection> x11);

    HotkeyService &hotkeys();
    TakenKeys *takenKeys();

    UserActivation m_activation;
    ActivationTokens m_activationTokens;
    std::unique_ptr<X11Connection> m_x11;
    std::unique_ptr<X11HotkeyService> m_x11Hotkeys;
    AbsentHotkeyService m_absentHotkeys;
    std::unique_ptr<GrabProbe> m_grabProbe;
    std::unique_ptr<KeyboardLayout> m_keyboardLayout;
    std::unique_ptr<WaylandHotkeyService> m_waylandHotkeys;
    LinuxSymbolicHotkeys m_symbolicHotkeys;
    IniUserDefaults m_userDefaults;
    LinuxWorkspace m_workspace;
    DBusNotificationCenter m_notifications;
    CanberraAlertSound m_alertSound;
    LinuxStatusBar m_statusBar{m_activation};
    LinuxApplication m_application{m_activation};
    LinuxEventMonitor m_eventMonitor{m_x11 ? SessionType::x11 : SessionType::wayland,
                                     m_x11Hotkeys.get(), m_waylandHotkeys.get()};
    GioApplications m_installedApplications;
    LinuxShortcutLibrary m_shortcutLibrary;
    AutostartLoginItem m_loginItem;
    LinuxSystemSettings m_systemSettings{m_activation, QProcessEnvironment::systemEnvironment()};
    LinuxAppearance m_appearance{QProcessEnvironment::systemEnvironment()};
    LinuxWording m_wording;
    MisjudgedRepeats m_misjudgedRepeats{isDownOnX11};
    Platform m_services;
};
