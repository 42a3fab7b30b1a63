#pragma once

#include <string_view>

namespace velmor::tools {

/// A rough count of a text's tokens, about four bytes each.
constexpr size_t tokenCount(std::string_view text) {
  return (text.size() + 3) / 4;
}

} // namespace velmor::tools
