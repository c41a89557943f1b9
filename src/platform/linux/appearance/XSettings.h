// The settings that GTK desktops announce on an X server (XSETTINGS), kept up to date.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QString>
#include <xcb/xcb.h>

/// The theme that the content of the settings property names; empty if it names none.
QString gtkThemeName(const QByteArray &content);

/// Uses Qt's connection, on which the events arrive anyway, because Qt follows the same settings.
class XSettings : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// To be called once, when QApplication exists. Does nothing on other platforms than X11.
    void start();

    /// Empty if nothing announces one.
    const QString &themeName() const { return m_themeName; }

Q_SIGNALS:
    /// Emitted when the theme has changed.
    void changed();

private:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;
    bool isNews(const xcb_generic_event_t &event) const;
    void read();
    QByteArray content() const;

    xcb_connection_t *m_connection = nullptr;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    xcb_atom_t m_managerMessage = XCB_ATOM_NONE;
    /// The window with the settings.
    xcb_window_t m_manager = XCB_NONE;
    QString m_themeName;
};
