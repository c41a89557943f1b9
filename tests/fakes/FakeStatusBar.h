// A status bar that nobody sees; the test opens the menu and chooses from it.
#pragma once

#include "platform/StatusBar.h"

class FakeStatusBar : public StatusBar
{
public:
    std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate &newDelegate) override
    {
        delegate = &newDelegate;
        return std::make_unique<Item>(*this);
    }

    /// Of the item that was made last; null before.
    StatusItemDelegate *delegate = nullptr;
    /// How often an item was told that its delegate says something else.
    int updates = 0;

private:
    class Item : public StatusItem
    {
    public:
        explicit Item(FakeStatusBar &bar)
            : m_bar(bar)
        {
        }
        void update() override { ++m_bar.updates; }

    private:
        FakeStatusBar &m_bar;
    };
};
