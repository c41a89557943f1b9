// Announces settings on the X server, as desktops made with GTK do.
#pragma once

#include <QByteArray>
#include <xcb/xcb.h>

class SettingsManager
{
public:
    /// Takes the place of any other manager. The settings name that theme.
    explicit SettingsManager(const QByteArray &theme);
    /// Takes the settings away.
    ~SettingsManager();
    SettingsManager(const SettingsManager &) = delete;
    SettingsManager &operator=(const SettingsManager &) = delete;

    void setTheme(const QByteArray &theme);

private:
    void announce() const;

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    xcb_window_t m_window;
};
