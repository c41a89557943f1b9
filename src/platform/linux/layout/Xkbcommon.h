// Owning pointers for xkbcommon's objects.
#pragma once

#include <memory>
#include <xkbcommon/xkbcommon.h>

template <auto unref>
struct XkbUnref {
    template <typename Object>
    void operator()(Object *object) const
    {
        unref(object);
    }
};
using XkbContext = std::unique_ptr<xkb_context, XkbUnref<xkb_context_unref>>;
using XkbKeymap = std::unique_ptr<xkb_keymap, XkbUnref<xkb_keymap_unref>>;
using XkbState = std::unique_ptr<xkb_state, XkbUnref<xkb_state_unref>>;

/// Makes a context for precompiled key maps, which searches for no files.
inline XkbContext makeXkbContext()
{
    return XkbContext(xkb_context_new(
        xkb_context_flags(XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES)));
}
