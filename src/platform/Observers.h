// Who wants to hear of something.
#pragma once

#include "platform/Registration.h"

#include <functional>
#include <map>

class Observers
{
public:
    /// Called at each tell() until the returned value ends, which must not be later than this.
    [[nodiscard]] Registration add(std::function<void()> observer)
    {
        const int id = m_nextId++;
        m_observers.emplace(id, std::move(observer));
        return Registration([this, id] { m_observers.erase(id); });
    }

    /// None of them may add or end one meanwhile.
    void tell() const
    {
        for (const auto &[id, observer] : m_observers)
            observer();
    }

private:
    std::map<int, std::function<void()>> m_observers;
    int m_nextId = 0;
};
