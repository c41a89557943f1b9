// A desktop whose user wants windows light, or dark.
#pragma once

#include "platform/Appearance.h"

class FakeAppearance : public Appearance
{
public:
    bool prefersDark() const override { return m_prefersDark; }

    void setPrefersDark(bool prefersDark)
    {
        m_prefersDark = prefersDark;
        Q_EMIT changed();
    }

private:
    bool m_prefersDark = false;
};
