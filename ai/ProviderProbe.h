#pragma once

#include "platform/Platform.h"

#include <string>

namespace velmor {

/// Asks a model provider for a word, to find out what stands in the way of suggestions.
struct ProviderProbe {
  /// The part at fault.
  enum class Fault {
    none,
    /// Nothing answers there, or something else than the provider does.
    reachability,
    key,
    model,
    /// The provider answers, but it does not serve this user or anybody now.
    service
  };

  Fault fault = Fault::none;
  /// What was found, in a sentence without the key.
  std::string detail;

  /// Sends one request whose answer may have 16 tokens, and waits for 30 seconds at most. Never
  /// throws. Any thread.
  [[nodiscard]] static ProviderProbe ask(const Platform& platform, const std::string& apiKey,
                                         const std::string& model);
};

} // namespace velmor
