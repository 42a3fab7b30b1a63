#pragma once

#include <memory>

struct _GCancellable;
struct _GDBusConnection;
struct _GMainContext;
struct _GVariant;

namespace velmor {

struct GObjectRelease {
  void operator()(void* object) const;
};

/// Owns one reference of a toolkit's object.
template <typename Object>
using GObjectPtr = std::unique_ptr<Object, GObjectRelease>;

/// Takes a reference, the floating one of a new widget if there is one.
void* takeReference(void* object);

template <typename Object>
GObjectPtr<Object> owned(Object* object) {
  return GObjectPtr<Object>(static_cast<Object*>(takeReference(object)));
}

/// Lets go of GLib's reference-counted things.
struct GlibRelease {
  void operator()(_GCancellable* cancellable) const;
  void operator()(_GMainContext* context) const;
  void operator()(_GVariant* value) const;
};

using CancellablePtr = std::unique_ptr<_GCancellable, GlibRelease>;
using MainContextPtr = std::unique_ptr<_GMainContext, GlibRelease>;
using VariantPtr = std::unique_ptr<_GVariant, GlibRelease>;
using BusConnectionPtr = std::shared_ptr<_GDBusConnection>;

} // namespace velmor
