#include "model/ModelProvider.h"

#include "base/Text.h"

namespace velmor {

ModelProvider modelProvider(std::string_view model) {
  const bool openAI = text::lowercased(text::trimmed(model)).starts_with("gpt-");
  return openAI ? ModelProvider::OpenAI : ModelProvider::Tinker;
}

std::string providerName(std::string_view model) {
  return modelProvider(model) == ModelProvider::OpenAI ? "OpenAI" : "Tinker";
}

} // namespace velmor
