#pragma once

#include <string>
#include <utility>
#include <vector>

namespace velmor::tools {

/// A request as it came over the wire.
struct ReceivedRequest {
  using Header = std::pair<std::string, std::string>;

  std::string method;
  std::string target;          ///< path with the query, if any
  std::vector<Header> headers; ///< names lower-cased; a repeated header stands here repeatedly
  std::string body;
};

} // namespace velmor::tools
