#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

/// Numbers in and out of texts, the same in every locale. Nothing here fails; any thread.
namespace velmor::number {

/// The whole text as a decimal number with a point, an optional sign and an optional exponent
/// ("128", "-.5", "1.5e2"). Nothing for anything else: blanks, a comma, hexadecimal digits, "nan",
/// "inf", a number too large for a double.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

/// The whole text as a decimal integer with an optional sign ("42", "+42", "-42"). Nothing for
/// anything else, nor for a number that does not fit.
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

/// The number with exactly `decimals` digits (0 to 30) after the point, rounded to the nearest:
/// "127.46". "nan" and "inf" for what is no number.
[[nodiscard]] std::string formatFixed(double value, int decimals);

} // namespace velmor::number
