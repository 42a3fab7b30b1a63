#include "base/Json.h"

#include "base/Text.h"

#include <cmath>
#include <limits>

namespace velmor {

namespace {

using Type = nlohmann::json::value_t;

/// 2^63: doubles from here on, and from its negative down, do not fit into the integers or may
/// stand for a number that does not.
constexpr double integerLimit = 9223372036854775808.0;

/// How many levels of arrays and objects a text may have.
constexpr int deepest = 100;

DecodingError unreadable(const char* key, const char* reason) {
  return DecodingError(std::string("The data couldn't be read because “") + key + "” " + reason +
                       ".");
}

/// Whether brackets of the text, which need not be JSON, lie deeper than anything that is meant.
bool isNestedTooDeeply(std::string_view text) {
  int depth = 0;
  for (std::size_t at = text.find_first_of("[{]}\""); at != std::string_view::npos;
       at = text.find_first_of("[{]}\"", at + 1)) {
    if (text[at] == '"') {
      at = text.find_first_of("\"\\", at + 1);
      while (at != std::string_view::npos && text[at] == '\\')
        at = text.find_first_of("\"\\", at + 2);
      if (at == std::string_view::npos) return false;
      continue;
    }
    depth += text[at] == '[' || text[at] == '{' ? 1 : -1;
    if (depth > deepest) return true;
  }
  return false;
}

} // namespace

std::string JsonEncoder::write(const nlohmann::json& json, int indent) {
  return json.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
}

nlohmann::json JsonDecoder::parse(std::string_view text) {
  // The library's own words name byte offsets, which help nobody who reads them on stage.
  const DecodingError failure("The data couldn't be read because it isn't in the correct format.");
  // The library takes a NUL for the end, whatever may come behind it.
  if (text.find('\0') != std::string_view::npos) throw failure;
  // Copying and writing take a call for each level, and many levels the whole stack.
  if (isNestedTooDeeply(text)) {
    throw DecodingError("The data couldn't be read because it is nested too deeply.");
  }
  try {
    return nlohmann::json::parse(text);
  } catch (const nlohmann::json::exception&) {
    throw failure;
  }
}

const JsonEncoder& jsonEncoder() {
  static const JsonEncoder encoder;
  return encoder;
}

const JsonDecoder& jsonDecoder() {
  static const JsonDecoder decoder;
  return decoder;
}

nlohmann::json jsonNumber(double value) {
  if (!std::isfinite(value)) throw EncodingError("a number is not finite");
  const bool isWhole = std::trunc(value) == value && std::abs(value) < integerLimit;
  if (isWhole) return static_cast<std::int64_t>(value);
  return value;
}

namespace member {

void requireObject(const nlohmann::json& json) {
  if (json.is_object()) return;
  throw DecodingError("The data couldn't be read because it isn't a JSON object.");
}

const nlohmann::json* find(const nlohmann::json& object, const char* key, AbsentMember absent) {
  const auto found = object.find(key);
  if (absent == AbsentMember::keepsDefault && (found == object.end() || found->is_null())) {
    return nullptr;
  }
  if (found == object.end()) throw unreadable(key, "is missing");
  return &*found;
}

void requireType(const nlohmann::json& value, const char* key, Type type) {
  if (value.type() != type) throw unreadable(key, "has the wrong type");
}

void read(const nlohmann::json& value, const char* key, std::string& text) {
  requireType(value, key, Type::string);
  const auto& given = value.get_ref<const std::string&>();
  if (text::bounded(given).size() < given.size()) throw unreadable(key, "is too long");
  text = given;
}

void read(const nlohmann::json& value, const char* key, std::int64_t& integer) {
  constexpr auto most = std::uint64_t{std::numeric_limits<std::int64_t>::max()};
  double wide = 0;
  read(value, key, wide);
  if (value.is_number_float()) {
    if (std::trunc(wide) != wide) throw unreadable(key, "is not a whole number");
    if (std::abs(wide) >= integerLimit) throw unreadable(key, "is too large");
    integer = static_cast<std::int64_t>(wide);
    return;
  }
  if (value.is_number_unsigned() && value.get<std::uint64_t>() > most) {
    throw unreadable(key, "is too large");
  }
  value.get_to(integer);
}

void read(const nlohmann::json& value, const char* key, double& number) {
  if (!value.is_number()) throw unreadable(key, "is not a number");
  value.get_to(number);
}

void read(const nlohmann::json& value, const char* key, bool& boolean) {
  requireType(value, key, Type::boolean);
  value.get_to(boolean);
}

} // namespace member

} // namespace velmor
