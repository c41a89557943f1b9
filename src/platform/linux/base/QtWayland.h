// The Wayland objects of Qt's own connection to the compositor.
#pragma once

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

/// Whether Qt runs on Wayland; not the case on XWayland.
inline bool isQtOnWayland()
{
    return QGuiApplication::platformName().startsWith(u"wayland");
}

/// An object that Qt names so, such as "wl_display"; null if it does not exist. Only if Qt runs on
/// Wayland.
template <typename Object>
Object *qtWaylandObject(const char *name)
{
    return static_cast<Object *>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name));
}
