// A desktop whose user wants windows light, or dark.
#pragma once

#include "platform/Appearance.h"
#include "platform/Observers.h"

class FakeAppearance : public Appearance
{
public:
    bool prefersDark() const override { return m_prefersDark; }
    Registration addObserver(std::function<void()> observer) override
    {
        return m_observers.add(std::move(observer));
    }

    void setPrefersDark(bool prefersDark)
    {
        m_prefersDark = prefersDark;
        m_observers.tell();
    }

private:
    bool m_prefersDark = false;
    Observers m_observers;
};
