#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
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

/// Reads the members of a record's JSON object. Every member must be there in its own type;
/// members that nobody reads are ignored. Throws DecodingError.
class RecordReader {
public:
  explicit RecordReader(const nlohmann::json& json);

  [[nodiscard]] std::string text(const char* key) const;
  /// Any number without a fractional part that fits.
  [[nodiscard]] std::int64_t integer(const char* key) const;
  [[nodiscard]] double number(const char* key) const;
  [[nodiscard]] bool boolean(const char* key) const;

  /// A nested record or an array of records.
  template <typename Record>
  [[nodiscard]] Record record(const char* key) const {
    return member(key, nlohmann::json::value_t::object).template get<Record>();
  }
  template <typename Record>
  [[nodiscard]] std::vector<Record> records(const char* key) const {
    return member(key, nlohmann::json::value_t::array).template get<std::vector<Record>>();
  }

private:
  [[nodiscard]] const nlohmann::json& member(const char* key) const;
  [[nodiscard]] const nlohmann::json& member(const char* key, nlohmann::json::value_t type) const;

  const nlohmann::json& object;
};

} // namespace velmor
