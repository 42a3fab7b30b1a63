#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace velmor {

/// Reading the parts that the answers of both providers share. Stateless; any thread.
struct ProviderAnswer {
  /// The answer as a JSON object. Throws DecodingError when it is not JSON, VelmorError with
  /// `notAnObject` when it is something else, and the provider's own message when it reports one.
  [[nodiscard]] static nlohmann::json object(std::string_view bytes, const char* notAnObject);

  /// The member as an array of objects; null when it is missing or anything else.
  [[nodiscard]] static const nlohmann::json* objects(const nlohmann::json& answer,
                                                     const char* member);

  /// True when the member is there and is this text.
  [[nodiscard]] static bool says(const nlohmann::json& object, const char* member,
                                 std::string_view value);

  /// The member when it is text, else null.
  [[nodiscard]] static const std::string* text(const nlohmann::json& object, const char* member);
};

} // namespace velmor
