#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace velmor {

/// Reading the parts that the answers of both providers share. Stateless; any thread.
struct ProviderAnswer {
  /// The answer as a JSON object. `provider` is its name. Throws DecodingError when it is not
  /// JSON, VelmorError with `notAnObject` when it is something else, and with the provider's own
  /// message, or a sentence in its place, when it reports an error.
  [[nodiscard]] static nlohmann::json object(std::string_view bytes, const std::string& provider,
                                             const char* notAnObject);

  /// True for HTML, which a network sends that wants its user to log in first.
  [[nodiscard]] static bool isWebPage(std::string_view bytes);
  [[nodiscard]] static std::string webPageMessage(const std::string& provider);

  /// What to say when the model ran out of tokens before its answer was whole.
  [[nodiscard]] static std::string cutOffMessage(const std::string& provider);

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
