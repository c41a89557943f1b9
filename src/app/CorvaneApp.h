// The application: it lives in the status bar; its only window is the settings window.
#pragma once

#include "app/AppDelegate.h"
#include "app/PlainLook.h"
#include "viewkit/FocusReturn.h"

#include <QApplication>

class CorvaneApp : public QApplication
{
public:
    CorvaneApp(int &argc, char **argv, const Platform &platform, ShortcutStore &store);

    AppDelegate appDelegate;

private:
    PlainLook m_plainLook;
    viewkit::FocusReturn m_focusReturn;
};
