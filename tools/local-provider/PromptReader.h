#pragma once

#include "PromptFacts.h"
#include "PromptFault.h"

#include <string_view>
#include <variant>

namespace velmor::tools {

/// Reads the sixteen lines of a prompt, holding each against its template to the letter.
class PromptReader {
public:
  static std::variant<PromptFacts, PromptFault> read(std::string_view prompt);
};

} // namespace velmor::tools
