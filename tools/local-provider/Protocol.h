#pragma once

#include <string_view>

namespace velmor::tools {

/// What the provider speaks.
enum class Protocol { responses, messages, release };

constexpr std::string_view responsesPath = "/v1/responses";
constexpr std::string_view messagesPath = "/services/tinker-prod/anthropic/api/v1/messages";
constexpr std::string_view releasePath = "/v1/macos";

} // namespace velmor::tools
