#pragma once

#include <memory>

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

} // namespace velmor
