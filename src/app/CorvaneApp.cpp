#include "app/CorvaneApp.h"

#include "platform/Platform.h"

using namespace Qt::StringLiterals;

CorvaneApp::CorvaneApp(int &argc, char **argv, const Platform &platform, ShortcutStore &store)
    : QApplication(argc, argv)
    , appDelegate(platform, store)
    , m_plainLook(platform.appearance)
{
    setDesktopFileName(platform.bundleIdentifier);
    setQuitOnLastWindowClosed(false);
}
