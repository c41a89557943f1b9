// A value, or the error that prevented it.
#pragma once

#include <QString>
#include <utility>
#include <variant>

/// A description of the failure that can be shown to the user.
struct Error {
    QString description;
};

/// Member names follow std::expected. Accessing the side that is not set is a programming error.
template <typename Value>
class [[nodiscard]] Result
{
public:
    Result(Value value)
        : m_content(std::in_place_index<0>, std::move(value))
    {
    }
    Result(Error error)
        : m_content(std::in_place_index<1>, std::move(error))
    {
    }

    bool has_value() const { return m_content.index() == 0; }
    explicit operator bool() const { return has_value(); }
    const Value &value() const & { return std::get<0>(m_content); }
    Value &&value() && { return std::get<0>(std::move(m_content)); }
    const Value &operator*() const & { return value(); }
    const Value *operator->() const { return &value(); }
    const Error &error() const { return std::get<1>(m_content); }

private:
    std::variant<Value, Error> m_content;
};
