#pragma once

#include <string>
#include <string_view>

namespace velmor {

enum class ModelProvider { OpenAI, Tinker };

/// The provider that a model's name belongs to, whatever its case and the blanks around it.
[[nodiscard]] ModelProvider modelProvider(std::string_view model);

/// "OpenAI" or "Tinker".
[[nodiscard]] std::string providerName(std::string_view model);

} // namespace velmor
