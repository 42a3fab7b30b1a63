#include "base/Json.h"

#include <cmath>
#include <cstdint>

namespace velmor {

std::string JsonEncoder::write(const nlohmann::json& json) {
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

nlohmann::json JsonDecoder::parse(std::string_view text) {
  try {
    return nlohmann::json::parse(text);
  } catch (const nlohmann::json::exception&) {
    // The library's own words name byte offsets, which help nobody who reads them on stage.
    throw DecodingError("The data couldn't be read because it isn't in the correct format.");
  }
}

nlohmann::json jsonNumber(double value) {
  if (!std::isfinite(value)) throw EncodingError("a number is not finite");
  const bool isWhole = std::trunc(value) == value && std::abs(value) < integerLimit;
  if (isWhole) return static_cast<std::int64_t>(value);
  return value;
}

const JsonEncoder& jsonEncoder() {
  static const JsonEncoder encoder;
  return encoder;
}

const JsonDecoder& jsonDecoder() {
  static const JsonDecoder decoder;
  return decoder;
}

using Type = nlohmann::json::value_t;

namespace {

DecodingError unreadable(const char* key, const char* reason) {
  return DecodingError(std::string("The data couldn't be read because “") + key + "” " + reason +
                       ".");
}

} // namespace

RecordReader::RecordReader(const nlohmann::json& json) : object(json) {
  if (!json.is_object())
    throw DecodingError("The data couldn't be read because it isn't a JSON object.");
}

std::string RecordReader::text(const char* key) const {
  return member(key, Type::string).get<std::string>();
}

std::int64_t RecordReader::integer(const char* key) const {
  const auto& value = member(key);
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::uint64_t{INT64_MAX}) {
    throw unreadable(key, "is too large");
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  const double wide = number(key);
  if (std::trunc(wide) != wide || wide < -integerLimit || wide >= integerLimit) {
    throw unreadable(key, "is not a whole number");
  }
  return static_cast<std::int64_t>(wide);
}

double RecordReader::number(const char* key) const {
  const auto& value = member(key);
  if (!value.is_number()) throw unreadable(key, "is not a number");
  return value.get<double>();
}

bool RecordReader::boolean(const char* key) const {
  return member(key, Type::boolean).get<bool>();
}

const nlohmann::json& RecordReader::member(const char* key) const {
  const auto found = object.find(key);
  if (found == object.end()) throw unreadable(key, "is missing");
  return *found;
}

const nlohmann::json& RecordReader::member(const char* key, Type type) const {
  const auto& value = member(key);
  if (value.type() != type) throw unreadable(key, "has the wrong type");
  return value;
}

} // namespace velmor
