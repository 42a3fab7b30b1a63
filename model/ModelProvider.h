#pragma once

#include <string>
#include <string_view>

namespace velmor {

enum class ModelProvider {
  OpenAI,
  Tinker,
  /// No model: the DJ's own music, which needs no key and asks nobody.
  Crate
};

/// The model name that stands for the DJ's own music.
inline constexpr auto crateModel = "velmor/crate";

/// The provider that a model's name belongs to, whatever its case and the blanks around it.
[[nodiscard]] ModelProvider modelProvider(std::string_view model);

/// "OpenAI", "Tinker" or "Your crate".
[[nodiscard]] std::string providerName(std::string_view model);

} // namespace velmor
