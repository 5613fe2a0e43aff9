#pragma once

#include <gio/gio.h>

#include <memory>

namespace kestrova {

struct GObjectUnref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
/// Owns one reference to a GObject.
template <typename T>
using GioPointer = std::unique_ptr<T, GObjectUnref>;

} // namespace kestrova
