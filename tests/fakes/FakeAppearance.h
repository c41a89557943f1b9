// A desktop with looks of its own, whose user wants windows light, or dark.
#pragma once

#include "platform/Appearance.h"

#include <QFont>
#include <QPalette>

class FakeAppearance : public Appearance
{
public:
    bool prefersDark() const override { return m_prefersDark; }
    std::optional<QPalette> palette() const override { return ownPalette; }
    std::optional<QFont> font() const override { return ownFont; }
    QString iconTheme() const override { return ownIconTheme; }

    void setPrefersDark(bool prefersDark)
    {
        m_prefersDark = prefersDark;
        Q_EMIT changed();
    }

    std::optional<QPalette> ownPalette;
    std::optional<QFont> ownFont;
    QString ownIconTheme;

private:
    bool m_prefersDark = false;
};
