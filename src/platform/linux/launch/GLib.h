// C++ owners for GLib's objects, and conversion of its errors.
#pragma once

#include "foundation/Result.h"

#include <glib-object.h>
#include <memory>

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename Object>
using GObjectPointer = std::unique_ptr<Object, GObjectUnref>;

/// Converts the error and frees it.
inline Error takeError(GError *error)
{
    const Error taken{QString::fromUtf8(error->message)};
    g_error_free(error);
    return taken;
}
