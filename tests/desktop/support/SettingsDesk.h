// The program and its settings window, as somebody uses them from outside: real keys, and what
// assistive programs can do. What its entries open is recorded.
#pragma once

#include "support/Accessible.h"
#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

/// Roles of what the window is made of.
namespace Role
{
inline const QString alert = QStringLiteral("alert message");
inline const QString button = QStringLiteral("push button");
inline const QString checkBox = QStringLiteral("check box");
inline const QString dialog = QStringLiteral("dialog");
inline const QString field = QStringLiteral("text");
inline const QString label = QStringLiteral("label");
inline const QString notice = QStringLiteral("notification");
inline const QString row = QStringLiteral("list item");
} // namespace Role

inline constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
inline const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
inline const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
inline constexpr StoredKeys storedControlAltJ{38, 0x1800};
inline constexpr StoredKeys storedControlAltK{40, 0x1800};

struct SettingsDesk {
    SettingsDesk();

    /// Adds an entry that opens the recorded app to the list that the program will find.
    QString addApp(StoredKeys keys) { return program.addApp(app.desktopFile(), keys); }

    /// Starts the program and asks for the window.
    void open();

    /// Ends the program, and starts it on what it has left behind.
    void restart();

    /// Asks for the window, and awaits it in front.
    void show();

    /// Awaits the window of the started program in front.
    void awaitWindow();

    /// The sheet with that title, once it is in front.
    Accessible sheet(const QString &title) const { return inFront(Role::dialog, title); }
    Accessible alert(const QString &title) const { return inFront(Role::alert, title); }

    /// The alert about an error, once it is in front and tells that.
    Accessible errorAlert(const QString &message) const;

    bool hasSheet() const;
    void awaitNoSheet() const;

    /// Presses a button of the window, or of a sheet of it.
    void press(const QString &name) const { press(all, name); }
    static void press(const Accessible &part, const QString &name);

    /// A check box of the window.
    Accessible checkBox(const QString &name) const { return all.find(Role::checkBox, name); }
    void toggle(const QString &name) const;

    Accessible row(const QString &name) const { return all.await(Role::row, name); }
    bool hasRow(const QString &name) const { return shows(Role::row, name); }
    bool shows(const QString &role, const QString &name) const;

    void awaitHeld(int key) const;
    void awaitFree(int key) const;
    void verifyThatKeysRunTheApp(const QList<int> &keys);

    /// Of the program's files.
    QString listPath() const
    {
        return program.dataHome() + QStringLiteral("/Corvane/entries.json");
    }
    QString settingsPath() const
    {
        return program.configHome() + QStringLiteral("/Corvane/Corvane.conf");
    }
    QByteArray list() const { return content(listPath()); }
    QByteArray settings() const { return content(settingsPath()); }

    /// Empty if it cannot be read.
    static QByteArray content(const QString &path);

    /// Also makes the folder.
    static void write(const QString &path, const QByteArray &content);

    RecordedApp app{"%u"};
    ProgramUnderTest program;
    Keyboard keyboard;
    /// All windows of the program.
    Accessible all;

private:
    Accessible inFront(const QString &role, const QString &title) const;
};
