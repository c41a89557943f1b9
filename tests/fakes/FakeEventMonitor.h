// A keyboard that is pressed by the test, and heard only while somebody monitors it.
#pragma once

#include "platform/EventMonitor.h"

#include <utility>

class FakeEventMonitor : public EventMonitor
{
public:
    std::optional<Registration>
    addLocalMonitorForEvents(QWidget &widget,
                             std::function<void(const KeyEvent &)> handler) override
    {
        ++additions;
        if (declines)
            return std::nullopt;
        m_handler = std::move(handler);
        monitored = &widget;
        return Registration([this] { monitored = nullptr; });
    }

    /// Whether somebody has swallowed the press.
    bool press(quint16 keyCode, quint32 modifierFlags)
    {
        if (!monitored)
            return false;
        // A copy: the handler may end itself.
        const auto handler = m_handler;
        handler({keyCode, modifierFlags});
        return true;
    }

    bool declines = false;
    int additions = 0;
    QWidget *monitored = nullptr;

private:
    std::function<void(const KeyEvent &)> m_handler;
};
