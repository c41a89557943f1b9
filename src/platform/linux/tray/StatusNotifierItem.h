// Exports the tray item over the bus, for desktops to show by themselves:
// org.kde.StatusNotifierItem.
#pragma once

#include <QDBusArgument>
#include <QIcon>
#include <QObject>

/// (iiay): an image with 32-bit ARGB pixels in network byte order.
struct IconPixmap {
    int width;
    int height;
    QByteArray pixels;
};
using IconPixmaps = QList<IconPixmap>;

/// D-Bus signature: (sa(iiay)ss)
struct ToolTip {
    QString iconName;
    IconPixmaps icon;
    QString title;
    QString text;
};

class StatusNotifierItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(IconPixmaps IconPixmap READ pixmaps)

public:
    /// Registers the item on the bus until it is destroyed.
    explicit StatusNotifierItem(const QString &id);

    /// Sets what desktops show: the icon with that name or, if it is empty, the other icon. The
    /// text is the tooltip and for screen readers.
    void setButton(const QIcon &icon, const QString &iconName, const QString &description);

    // The generated adaptor calls these methods and passes these signals on, by their names on the
    // bus.
    void Activate(int, int) { Q_EMIT clicked(); }
    void ContextMenu(int, int) { Q_EMIT clicked(); }
    void SecondaryActivate(int, int) { Q_EMIT clicked(); }
    void Scroll(int, const QString &) { }
    void ProvideXdgActivationToken(const QString &token)
    {
        Q_EMIT activationTokenProvided(token.toUtf8());
    }

Q_SIGNALS:
    void NewIcon();
    void NewToolTip();

    /// Emitted when the user wants the menu and the desktop leaves it to us.
    void clicked();

    /// Emitted with the token for the user's next action, for windows on Wayland.
    void activationTokenProvided(const QByteArray &token);

private:
    IconPixmaps pixmaps();

    QIcon m_icon;
    /// The icon in its form for the bus; drawn on first use.
    IconPixmaps m_pixmaps;
};
