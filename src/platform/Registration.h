// Keeps something registered with a system service for as long as the value lives.
#pragma once

#include <functional>
#include <utility>

/// Move-only. The service that issued it must outlive it.
class [[nodiscard]] Registration
{
public:
    explicit Registration(std::function<void()> end)
        : m_end(std::move(end))
    {
    }
    Registration(Registration &&other) noexcept
        : m_end(std::exchange(other.m_end, nullptr))
    {
    }
    Registration &operator=(Registration &&other) noexcept
    {
        std::swap(m_end, other.m_end);
        return *this;
    }
    ~Registration()
    {
        if (m_end)
            m_end();
    }

private:
    std::function<void()> m_end;
};
