#pragma once

#include <string>
#include <string_view>

namespace velmor {

/// The text with every byte encoded as %XX that is neither a letter, a digit, one of "-._~" nor in
/// `allowed`.
[[nodiscard]] std::string percentEncoded(std::string_view text, std::string_view allowed);

} // namespace velmor
