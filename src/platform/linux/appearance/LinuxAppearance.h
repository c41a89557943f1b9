// The looks of a Linux desktop, put together from where each desktop keeps them.
#pragma once

#include "platform/Appearance.h"
#include "platform/linux/appearance/ConfiguredLooks.h"
#include "platform/linux/appearance/PortalColorScheme.h"

#include <QProcessEnvironment>

class LinuxAppearance : public Appearance
{
    Q_OBJECT

public:
    explicit LinuxAppearance(const QProcessEnvironment &environment);

    /// To be called once, when QApplication exists.
    void start();

    bool prefersDark() const override { return m_portal.prefersDark(); }
    std::optional<QFont> font() const override { return m_configured.font; }
    QString iconTheme() const override { return m_configured.iconTheme; }

private:
    const bool m_isLxqt;
    ConfiguredLooks m_configured;
    PortalColorScheme m_portal;
};
