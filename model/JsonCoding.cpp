#include "model/JsonCoding.h"

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

} // namespace velmor
