#include "base/Text.h"
#include "nowplaying/readers/MixxxDetector.h"
#include "nowplaying/readers/MixxxLibrary.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto display = MixxxDetector::displayText(fuzz::text(data, size));
  if (!display) return 0;
  fuzz::require(!display->empty() && text::trimmed(*display) == *display);
  const auto split = MixxxLibrary::splitDisplay(*display);
  if (!split) return 0;
  fuzz::require(!split->first.empty() && !split->second.empty());
  fuzz::require(split->first.find(" - ") == std::string::npos);
  return 0;
}
