#pragma once

#include <nlohmann/json.hpp>

#include <stdexcept>
#include <string>
#include <string_view>

namespace velmor {

/// The text is not JSON, or not the JSON form of the wanted record.
class DecodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A record holds something that JSON has no form for.
class EncodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Writes records as compact JSON under their field names. Texts that are not UTF-8 come out with
/// U+FFFD in place of the bad bytes.
class JsonEncoder {
public:
  /// Throws EncodingError.
  template <typename Value>
  [[nodiscard]] std::string encode(const Value& value) const {
    return write(nlohmann::json(value));
  }

private:
  [[nodiscard]] static std::string write(const nlohmann::json& json);
};

/// Reads records from their JSON form.
class JsonDecoder {
public:
  /// Throws DecodingError.
  template <typename Record>
  [[nodiscard]] Record decode(std::string_view text) const {
    return parse(text).template get<Record>();
  }

  /// Any JSON text. Throws DecodingError.
  [[nodiscard]] static nlohmann::json parse(std::string_view text);
};

/// 2^63: from here on a double does not fit into the integers.
inline constexpr double integerLimit = 9223372036854775808.0;

/// A number as JSON can carry it, a whole one without a fraction: 128, not 128.0. Throws
/// EncodingError for NaN and infinities.
[[nodiscard]] nlohmann::json jsonNumber(double value);

/// The coders that everything between the page, the providers and Velmor goes through.
[[nodiscard]] const JsonEncoder& jsonEncoder();
[[nodiscard]] const JsonDecoder& jsonDecoder();

} // namespace velmor
