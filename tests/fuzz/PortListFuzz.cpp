#include "nowplaying/readers/VirtualDJNetworkControl.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>

using namespace velmor;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto ports = VirtualDJNetworkControl::parsePorts(fuzz::text(data, size));
  fuzz::require(std::ranges::adjacent_find(ports, std::greater_equal{}) == ports.end());
  return 0;
}
