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
    // bit, and the threads that help with painting end after a while.
    QPixmapCache::setCacheLimit(0);
    QThreadPool::globalInstance()->setExpiryTimeout(-1);
}
