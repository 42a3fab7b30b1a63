#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

/// Numbers in and out of texts, the same in every locale.
namespace velmor::number {

/// The whole text as a decimal floating-point number; nothing for anything else, NaN and
/// infinities included.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

/// The whole text as a decimal integer with an optional sign; nothing when it is anything else or
/// does not fit.
template <std::signed_integral Integer>
[[nodiscard]] std::optional<Integer> parseInteger(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  Integer value{};
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return value;
}

/// With exactly `decimals` digits after the point.
[[nodiscard]] std::string formatFixed(double value, int decimals);

} // namespace velmor::number
