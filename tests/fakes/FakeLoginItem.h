// A login item in memory, whose desktop may refuse or ask for approval.
#pragma once

#include "platform/LoginItem.h"

class FakeLoginItem : public LoginItem
{
public:
    LoginItemStatus status() const override
    {
        ++reads;
        return current;
    }
    std::optional<Error> registerItem() override { return change(whenRegistered); }
    std::optional<Error> unregisterItem() override
    {
        return change(LoginItemStatus::notRegistered);
    }

    LoginItemStatus current = LoginItemStatus::notRegistered;
    /// What comes of registering.
    LoginItemStatus whenRegistered = LoginItemStatus::enabled;
    /// Why nothing can be changed, if that is so.
    std::optional<Error> error;
    mutable int reads = 0;

private:
    std::optional<Error> change(LoginItemStatus wanted)
    {
        if (!error)
            current = wanted;
        return error;
    }
};
