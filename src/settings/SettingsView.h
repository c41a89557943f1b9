// The whole content of the settings window.
#pragma once

#include <QWidget>

class SettingsView : public QWidget
{
public:
    SettingsView();
};
