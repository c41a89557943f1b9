// An application described by its .desktop file, as GIO reads it.
#pragma once

#include "foundation/Result.h"
#include "platform/linux/launch/GLib.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <gio/gdesktopappinfo.h>
#include <optional>
#include <vector>

class DesktopApp
{
public:
    /// Reads a .desktop file. Nothing if it is not one, is malformed, or names a missing program;
    /// GIO does not tell which.
    static std::optional<DesktopApp> fromFile(const QString &path);

    /// The reason why fromFile() returns nothing for that file.
    static Error reasonForNone(const QString &path);

    /// The applications that the menus of this desktop show to this user. GIO rereads changed
    /// files, but notices changes only a moment later.
    static std::vector<DesktopApp> allShown();

    /// Whether an installed application has that StartupWMClass, without regard to case. Reads all
    /// of them.
    static bool isWindowClassOfAny(const QString &windowClass);

    /// The default application for the file, folder or address; nothing if there is none.
    static std::optional<DesktopApp> defaultFor(const QUrl &url);

    /// The default application for plain text; nothing if there is none.
    static std::optional<DesktopApp> textEditor();

    /// The name of its file, such as org.gnome.Maps.desktop.
    QString id() const;
    QString file() const;
    /// The displayed name.
    QString name() const;
    /// Like name(), but the full name if the file has one.
    QString displayName() const;
    /// The name of an icon in the theme or the path of an image; empty if it has none.
    QString icon() const;
    /// The kind of application in a few words; empty if the file does not say.
    QString genericName() const;
    QStringList keywords() const;
    /// A value from the file's main group; empty if there is none.
    QString text(const char *key) const;
    /// A missing value is neither true nor false; an invalid Boolean is false.
    bool isTrue(const char *key) const;
    bool isFalse(const char *key) const;

    GDesktopAppInfo *get() const { return m_info.get(); }

private:
    static std::vector<DesktopApp> all();
    static std::optional<DesktopApp> owning(GAppInfo *info);

    explicit DesktopApp(GDesktopAppInfo *info)
        : m_info(info)
    {
    }

    GObjectPointer<GDesktopAppInfo> m_info;
};
