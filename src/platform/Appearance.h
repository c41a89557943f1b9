// Whether the user wants light or dark windows, as far as the desktop tells.
#pragma once

#include "platform/Registration.h"

#include <functional>

class Appearance
{
public:
    virtual ~Appearance() = default;

    /// False until the desktop has said so, and where it says nothing.
    virtual bool prefersDark() const = 0;

    /// The observer is called after each change, until the returned value ends.
    virtual Registration addObserver(std::function<void()> observer) = 0;
};
