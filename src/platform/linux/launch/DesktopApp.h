// An application as its .desktop file describes it, as GIO reads it.
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
    /// Nothing if the file is none, is malformed, or its program is not there: GIO does not tell.
    static std::optional<DesktopApp> fromFile(const QString &path);

    /// Why fromFile() gives nothing for that file.
    static Error reasonForNone(const QString &path);

    /// Those that the menus of this desktop show to this user. GIO reads the files anew after they
    /// have changed, but hears of that only a moment later.
    static std::vector<DesktopApp> allShown();

    /// What opens such a file, folder or address by default; nothing if nothing does.
    static std::optional<DesktopApp> defaultFor(const QUrl &url);

    /// The name of its file, such as org.gnome.Maps.desktop.
    QString id() const;
    QString file() const;
    /// What the user sees as its name.
    QString name() const;
    /// As name(), in full where the file has a fuller one.
    QString displayName() const;
    /// The name of an icon of the theme or the path of an image; empty if it has none.
    QString icon() const;
    /// What kind of application it is, in a few words; empty if the file does not say.
    QString genericName() const;
    QStringList keywords() const;
    /// A value of the file's main group, empty if there is none.
    QString text(const char *key) const;
    /// A value that is not there is neither true nor false; one that is no Boolean is false.
    bool isTrue(const char *key) const;
    bool isFalse(const char *key) const;

    GDesktopAppInfo *get() const { return m_info.get(); }

private:
    explicit DesktopApp(GDesktopAppInfo *info)
        : m_info(info)
    {
    }

    GObjectPointer<GDesktopAppInfo> m_info;
};
