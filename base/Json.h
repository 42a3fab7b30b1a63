#pragma once

#include "base/Record.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// JSON in and out. A record (base/Record.h) is one JSON object with its fields' keys:
/// - Encoding writes every field: texts as strings, whole numbers and true or false as such,
///   a `double` as a number, nested records as objects, vectors of records as arrays.
/// - Decoding wants every key, each with a value of the field's own type; null is none. A `double`
///   takes any number, an integer any number without a fractional part that fits into 64 bits.
///   A text has `text::mostCharacters` at most. Keys that the record does not list are ignored.
/// Everything here may be called from any thread.
namespace velmor {

/// The text is not JSON, or not the JSON form of the wanted record. The message is a sentence that
/// names the key at fault, when there is one.
class DecodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A record holds something that JSON has no form for: a number that is not finite.
class EncodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Writes records and other values as JSON. Texts that are not UTF-8 come out with U+FFFD in place
/// of the bad bytes.
class JsonEncoder {
public:
  /// On one line, without blanks. Throws EncodingError.
  template <typename Value>
  [[nodiscard]] std::string encode(const Value& value) const {
    return write(nlohmann::json(value), -1);
  }

  /// One member a line, two blanks a level, keys in ascending order. Throws EncodingError.
  template <typename Value>
  [[nodiscard]] std::string encodeIndented(const Value& value) const {
    return write(nlohmann::json(value), 2);
  }

private:
  [[nodiscard]] static std::string write(const nlohmann::json& json, int indent);
};

/// What decoding does with a member that is missing or null.
enum class AbsentMember { fails, keepsDefault };

/// Reads records from their JSON form.
class JsonDecoder {
public:
  /// Throws DecodingError.
  template <Record Type>
  [[nodiscard]] Type decode(std::string_view text) const {
    return parse(text).template get<Type>();
  }

  /// For answers of others, who may leave members out: what is missing or null keeps its default,
  /// what has another type still fails. Throws DecodingError.
  template <Record Type>
  [[nodiscard]] Type decodeLeniently(std::string_view text) const;

  /// Any JSON text with at most 100 levels of arrays and objects. Throws DecodingError.
  [[nodiscard]] static nlohmann::json parse(std::string_view text);
};

/// The coders that everything between the page, the providers and Velmor goes through.
[[nodiscard]] const JsonEncoder& jsonEncoder();
[[nodiscard]] const JsonDecoder& jsonDecoder();

/// A number as JSON can carry it, a whole one without a fraction: 128, not 128.0. Throws
/// EncodingError for NaN and infinities.
[[nodiscard]] nlohmann::json jsonNumber(double value);

/// How one member of an object is read. Everything throws DecodingError.
namespace member {

/// Throws unless `json` is an object.
void requireObject(const nlohmann::json& json);

/// The member of the object; null when it is absent and may be.
[[nodiscard]] const nlohmann::json* find(const nlohmann::json& object, const char* key,
                                         AbsentMember absent);

/// Throws unless the member `key` has this type.
void requireType(const nlohmann::json& value, const char* key, nlohmann::json::value_t type);

void read(const nlohmann::json& value, const char* key, std::string& text);
void read(const nlohmann::json& value, const char* key, std::int64_t& integer);
void read(const nlohmann::json& value, const char* key, double& number);
void read(const nlohmann::json& value, const char* key, bool& boolean);

template <Record Type>
void read(const nlohmann::json& value, const char* key, Type& record) {
  requireType(value, key, nlohmann::json::value_t::object);
  value.get_to(record);
}

template <Record Type>
void read(const nlohmann::json& value, const char* key, std::vector<Type>& records) {
  requireType(value, key, nlohmann::json::value_t::array);
  value.get_to(records);
}

template <Record Type>
void readAll(const nlohmann::json& json, Type& record, AbsentMember absent) {
  requireObject(json);
  forEachField<Type>([&](const auto& field) {
    const auto* const value = find(json, field.key, absent);
    if (value) read(*value, field.key, record.*field.member);
  });
}

} // namespace member

/// What makes a record convertible to and from nlohmann::json.
template <Record Type>
void to_json(nlohmann::json& json, const Type& record) {
  // Handed over whole: a value that throws while it is made would leave behind what it had so far.
  auto object = nlohmann::json::object();
  forEachField<Type>([&](const auto& field) {
    const auto& value = record.*field.member;
    if constexpr (std::is_floating_point_v<std::decay_t<decltype(value)>>)
      object[field.key] = jsonNumber(value);
    else
      object[field.key] = value;
  });
  json = std::move(object);
}

template <Record Type>
void from_json(const nlohmann::json& json, Type& record) {
  member::readAll(json, record, AbsentMember::fails);
}

template <Record Type>
Type JsonDecoder::decodeLeniently(std::string_view text) const {
  Type record;
  member::readAll(parse(text), record, AbsentMember::keepsDefault);
  return record;
}

} // namespace velmor
