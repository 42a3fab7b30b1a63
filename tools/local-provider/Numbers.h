#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::tools {

/// The whole text as a decimal integer without leading zeros or sign other than "-".
std::optional<int> wholeNumber(std::string_view text);

/// The whole text as a number with exactly two decimals, such as "128.00". Not locale-dependent.
std::optional<double> twoDecimalNumber(std::string_view text);

/// A number for reading: at most two decimals, no trailing zeros.
std::string shortText(double number);

} // namespace velmor::tools
