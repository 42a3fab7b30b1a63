#include "base/Text.h"
#include "nowplaying/readers/TsafArchive.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto item = TsafArchive::parseHistoryItem({data, data + size});
  if (item) {
    fuzz::require(!item->title.empty() && text::isValidUtf8(item->title));
    fuzz::require(!item->artist.empty() && text::isValidUtf8(item->artist));
    fuzz::require(item->period.duration > Seconds{0});
    (void)item->period.contains(std::chrono::system_clock::time_point{});
  }
  const auto bytes = TsafArchive::bytes(fuzz::text(data, size));
  fuzz::require(!bytes || bytes->size() * 2 <= size);
  return 0;
}
