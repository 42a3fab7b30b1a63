#pragma once

#include <string>

namespace velmor {

/// What an installed application says of itself in its desktop entry file.
struct DesktopEntry {
  /// The file's name without its extension, such as "org.mixxx.Mixxx".
  std::string identifier;
  std::string name;
  /// The base name of the program that it starts.
  std::string program;
  /// The class of its windows; "" when it does not say.
  std::string windowClass;
};

} // namespace velmor
