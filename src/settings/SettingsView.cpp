#include "settings/SettingsView.h"

SettingsView::SettingsView()
{
    setMinimumSize(580, 480);
}
