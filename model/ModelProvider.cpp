#include "model/ModelProvider.h"

#include "base/Text.h"

namespace velmor {

ModelProvider modelProvider(std::string_view model) {
  const auto name = text::lowercased(text::trimmed(model));
  if (name == crateModel) return ModelProvider::Crate;
  return name.starts_with("gpt-") ? ModelProvider::OpenAI : ModelProvider::Tinker;
}

std::string providerName(std::string_view model) {
  switch (modelProvider(model)) {
  case ModelProvider::OpenAI:
    return "OpenAI";
  case ModelProvider::Tinker:
    return "Tinker";
  case ModelProvider::Crate:
    return "Your crate";
  }
  return "";
}

} // namespace velmor
