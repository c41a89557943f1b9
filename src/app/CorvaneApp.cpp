#include "app/CorvaneApp.h"

#include "platform/Platform.h"

#include <QPixmapCache>
#include <QThreadPool>

using namespace Qt::StringLiterals;

CorvaneApp::CorvaneApp(int &argc, char **argv, const Platform &platform, ShortcutStore &store)
    : QApplication(argc, argv)
    , appDelegate(platform, store)
    , m_plainLook(platform.appearance)
{
    setDesktopFileName(platform.bundleIdentifier);
    setQuitOnLastWindowClosed(false);
    // Qt would go on for minutes after the window was closed: its cache of images is emptied bit by
    // bit, and the threads that help with painting end after a while. Without that cache, a page of
    // the application chooser (12 rows with SVG icons) is painted in 2 ms instead of 1.5 ms.
    QPixmapCache::setCacheLimit(0);
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
}
