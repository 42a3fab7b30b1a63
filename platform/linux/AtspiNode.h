#pragma once

#include "platform/Accessibility.h"

#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// The bus name and object path of something that a program shows.
struct AtspiReference {
  std::string name;
  std::string path;
  // NOLINTNEXTLINE(modernize-use-nullptr): Clang takes the comparison with zero for a pointer.
  auto operator<=>(const AtspiReference&) const = default;
};

/// What a program says of one thing in its windows.
struct AtspiNode {
  AtspiReference reference;
  std::string name;
  /// The text or number that it holds; read ahead for what has no name.
  std::string value;
  bool valueKnown = false;
  /// False where asking for a value is known to be in vain.
  bool mayHoldValue = true;
  /// Seen on screen; what is not has no frame.
  bool showing = false;
  /// The window that has the keyboard.
  bool active = false;
  Point position;
  Size size;
  std::vector<std::shared_ptr<AtspiNode>> children;
  bool childrenKnown = false;
};

using AtspiNodePtr = std::shared_ptr<AtspiNode>;
using AtspiNodes = std::vector<AtspiNodePtr>;

} // namespace velmor
