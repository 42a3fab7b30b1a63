#pragma once

#include <memory>

struct _GCancellable;
struct _GDBusConnection;
struct _GMainContext;
struct _GVariant;

namespace velmor {

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
