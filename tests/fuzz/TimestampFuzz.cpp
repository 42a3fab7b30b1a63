#include "nowplaying/readers/MixxxLibrary.h"
#include "tests/fuzz/FuzzTarget.h"

#include <cmath>

using namespace velmor;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto moment = MixxxLibrary::parseMixxxTimestamp(fuzz::text(data, size));
  // Four digits of a year reach back and forward by less than this.
  constexpr double seconds = 3e11;
  fuzz::require(!moment || std::abs(moment->time_since_epoch().count()) < seconds);
  return 0;
}
