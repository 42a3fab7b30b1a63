#pragma once

#include "Difference.h"

namespace velmor::tools {

/// Why a request gets no answer.
struct Refusal {
  int status = 400; ///< HTTP status
  Difference difference;
};

} // namespace velmor::tools
