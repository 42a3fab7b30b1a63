#pragma once

#include "ReceivedRequest.h"

#include <string>

namespace velmor::tools {

/// A received request as one line of JSON for a test to read. A key never stands in it: the
/// value of a key header becomes "expected key", "other key" or "malformed".
class RequestRecord {
public:
  static std::string line(const ReceivedRequest& request, const std::string& expectedKey);
};

} // namespace velmor::tools
