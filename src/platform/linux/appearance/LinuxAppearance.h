// The looks of a Linux desktop, put together from where the desktops keep them.
#pragma once

#include "platform/Appearance.h"
#include "platform/linux/appearance/ConfiguredLooks.h"
#include "platform/linux/appearance/GtkPanels.h"
#include "platform/linux/appearance/PortalColorScheme.h"
#include "platform/linux/appearance/XSettings.h"
#include "platform/linux/base/FileWatch.h"

#include <QProcessEnvironment>

class LinuxAppearance : public Appearance
{
    Q_OBJECT

public:
    explicit LinuxAppearance(const QProcessEnvironment &environment);

    /// To be called once, when QApplication exists.
    void start();

    bool prefersDark() const override { return m_portal.prefersDark().value_or(m_isThemeDark); }
    std::optional<QPalette> palette() const override { return m_looks.palette; }
    std::optional<QFont> font() const override { return m_looks.font; }
    QString iconTheme() const override { return m_looks.iconTheme; }

private:
    void followLooks(LooksSource source);
    void readTheme();

    const std::optional<LooksSource> m_source;
    ConfiguredLooks m_looks;
    std::optional<FileWatch> m_files;
    PortalColorScheme m_portal;
    XSettings m_settings;
    GtkPanels m_gtkPanels;
    bool m_isThemeDark = false;
};
