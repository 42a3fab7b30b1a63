#pragma once

#include "model/ModelProvider.h"
#include "platform/Platform.h"

#include <string>

namespace velmor {

/// Where a model provider's requests are sent to.
struct ProviderEndpoint {
  static constexpr auto tinkerDefault =
      "https://tinker.thinkingmachines.dev/services/tinker-prod/anthropic/api/v1/messages";
  static constexpr auto openAIDefault = "https://api.openai.com/v1/responses";

  /// The whole address.
  std::string address;
  /// A sentence that says why the address cannot be used; "" when it can.
  std::string fault = "";

  /// The address that VELMOR_OPENAI_URL or VELMOR_TINKER_URL names, without blanks around it; the
  /// provider's own when it names none. Any thread.
  [[nodiscard]] static ProviderEndpoint of(const Platform& platform, ModelProvider provider);
};

} // namespace velmor
