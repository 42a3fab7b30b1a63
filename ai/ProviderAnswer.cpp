#include "ai/ProviderAnswer.h"

#include "base/Json.h"
#include "base/Text.h"
#include "base/VelmorError.h"

#include <algorithm>

namespace velmor {

using Json = nlohmann::json;

Json ProviderAnswer::object(std::string_view bytes, const std::string& provider,
                            const char* notAnObject) {
  if (isWebPage(bytes)) throw DecodingError(webPageMessage(provider));
  Json answer = JsonDecoder::parse(bytes);
  if (!answer.is_object()) throw VelmorError(notAnObject);
  const auto error = answer.find("error");
  if (error == answer.end() || !error->is_object()) return answer;
  const auto* const message = text(*error, "message");
  if (!message) return answer;
  const bool isBlank = velmor::text::trimmed(*message).empty();
  if (isBlank) throw VelmorError(provider + " reported an error without a reason.");
  throw VelmorError(std::string(velmor::text::bounded(*message)));
}

bool ProviderAnswer::isWebPage(std::string_view bytes) {
  return velmor::text::trimmed(bytes).starts_with('<');
}

std::string ProviderAnswer::webPageMessage(const std::string& provider) {
  return provider + " answered with a web page: is this network asking you to log in?";
}

std::string ProviderAnswer::cutOffMessage(const std::string& provider) {
  return provider + "'s answer was cut off; ask for fewer songs";
}

const Json* ProviderAnswer::objects(const Json& answer, const char* member) {
  const auto found = answer.find(member);
  if (found == answer.end() || !found->is_array()) return nullptr;
  const bool allObjects =
      std::ranges::all_of(*found, [](const Json& item) { return item.is_object(); });
  return allObjects ? &*found : nullptr;
}

bool ProviderAnswer::says(const Json& object, const char* member, std::string_view value) {
  const auto* found = text(object, member);
  return found && *found == value;
}

const std::string* ProviderAnswer::text(const Json& object, const char* member) {
  const auto found = object.find(member);
  return found == object.end() ? nullptr : found->get_ptr<const std::string*>();
}

} // namespace velmor
