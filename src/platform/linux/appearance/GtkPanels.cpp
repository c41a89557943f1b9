#include "platform/linux/appearance/GtkPanels.h"

#include <QApplication>
#include <QFileDialog>
#include <QScreen>
#include <dlfcn.h>
#include <glib.h>
#include <memory>

namespace
{
struct GtkWindow;

struct LibraryClose {
    void operator()(void *library) const { dlclose(library); }
};

/// The functions of the library that Qt's platform theme has loaded. Linking to it would load it
/// for everyone.
class Gtk
{
    template <typename Function, typename... Arguments>
    auto call(const char *name, Arguments... arguments) const
    {
        return reinterpret_cast<Function *>(dlsym(m_library.get(), name))(arguments...);
    }

public:
    bool isLoaded() const { return m_library != nullptr; }

    /// The caller owns the list.
    GList *toplevels() const { return call<GList *()>("gtk_window_list_toplevels"); }
    bool isVisible(GtkWindow *window) const
    {
        return call<int(GtkWindow *)>("gtk_widget_get_visible", window);
    }
    QSize size(GtkWindow *window) const
    {
        QSize size;
        call<void(GtkWindow *, int *, int *)>("gtk_window_get_size", window, &size.rwidth(),
                                              &size.rheight());
        return size;
    }
    void resize(GtkWindow *window, const QSize &size) const
    {
        call<void(GtkWindow *, int, int)>("gtk_window_resize", window, size.width(), size.height());
    }

private:
    const std::unique_ptr<void, LibraryClose> m_library{
        dlopen("libgtk-3.so.0", RTLD_LAZY | RTLD_NOLOAD)};
};

/// What a window may take of the screen of the panel's owner, with a frame like that of the owner.
QSize roomFor(const QFileDialog &panel)
{
    const QWidget &owner = *(panel.parentWidget() ? panel.parentWidget()->window() : &panel);
    return owner.screen()->availableSize() - (owner.frameSize() - owner.size());
}

void fitPanels(const QSize &room)
{
    const Gtk gtk;
    if (!gtk.isLoaded())
        return;
    GList *const windows = gtk.toplevels();
    for (const GList *item = windows; item; item = item->next) {
        auto *const window = static_cast<GtkWindow *>(item->data);
        const QSize size = gtk.size(window).boundedTo(room);
        if (gtk.isVisible(window) && size != gtk.size(window))
            gtk.resize(window, size);
    }
    g_list_free(windows);
}
} // namespace

void GtkPanels::start()
{
    qApp->installEventFilter(this);
}

bool GtkPanels::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Show)
        return false;
    const auto *const panel = qobject_cast<QFileDialog *>(watched);
    // Qt shows the desktop's own panel in place of the dialog.
    if (panel && panel->testAttribute(Qt::WA_DontShowOnScreen))
        fitPanels(roomFor(*panel));
    return false;
}
