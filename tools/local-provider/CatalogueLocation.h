#pragma once

#include <filesystem>

namespace velmor::tools {

/// Where the bundled catalogue lies.
class CatalogueLocation {
public:
  /// Beside the program, in the share folder that belongs to it, or in the source tree it was
  /// built from: the first that is there.
  static std::filesystem::path find();
};

} // namespace velmor::tools
