#include "ai/ProviderEndpoint.h"

#include "base/Text.h"
#include "platform/Environment.h"

#include <algorithm>
#include <string_view>

namespace velmor {

namespace {

/// Whether it looks like an address; the request finds out the rest.
bool isUsable(std::string_view address) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (!text::lowercased(address.substr(0, scheme.size())).starts_with(scheme)) continue;
    const auto rest = address.substr(scheme.size());
    const bool hasHost = !rest.empty() && rest.front() != '/' && rest.front() != ':';
    return hasHost && std::ranges::none_of(rest, [](char character) {
             return static_cast<unsigned char>(character) <= ' ' || character == '\x7F';
           });
  }
  return false;
}

} // namespace

ProviderEndpoint ProviderEndpoint::of(const Platform& platform, ModelProvider provider) {
  const bool openAI = provider == ModelProvider::OpenAI;
  const std::string variable = openAI ? "VELMOR_OPENAI_URL" : "VELMOR_TINKER_URL";
  const auto given = platform.environment.variable(variable).value_or("");
  const auto address = text::trimmed(given);
  if (address.empty()) return {openAI ? openAIDefault : tinkerDefault};
  if (isUsable(address)) return {std::string(address)};
  return {std::string(address), variable + " is not a whole address that begins with http:// or "
                                           "https://."};
}

} // namespace velmor
