// aravis/object.h
// Owners of what Aravis and GLib count or allocate.
#pragma once

#include <arv.h>

#include <memory>

namespace Bridge {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
// A counted reference to a GObject.
template <class Type>
using Object = std::unique_ptr<Type, Unref>;

struct Free {
  void operator()(gpointer memory) const { g_free(memory); }
};
// Memory that GLib has allocated.
template <class Type>
using Allocated = std::unique_ptr<Type, Free>;

}  // namespace Bridge
