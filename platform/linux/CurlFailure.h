#pragma once

#include <curl/curl.h>

#include <string>

namespace velmor {

/// What a failed transfer means, as a sentence for the user.
[[nodiscard]] std::string transportMessage(CURLcode failure);

} // namespace velmor
