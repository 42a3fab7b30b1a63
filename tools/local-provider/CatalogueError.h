#pragma once

#include <stdexcept>

namespace velmor::tools {

/// A catalogue that cannot be read, or a song in it that cannot be right.
class CatalogueError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace velmor::tools
