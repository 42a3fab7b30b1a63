#pragma once

#include <string>
#include <string_view>

namespace velmor::tools {

/// Identifiers that look like a provider's, yet are the same for the same request.
class StableId {
public:
  /// `prefix` followed by `digits` hexadecimal digits drawn from `seed`.
  static std::string of(std::string_view prefix, std::string_view seed, size_t digits);
};

} // namespace velmor::tools
