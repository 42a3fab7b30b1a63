#include "nowplaying/readers/VirtualDJHistory.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto playlist = fuzz::text(data, size);
  const auto entry = VirtualDJHistory::lastEntry(playlist);
  fuzz::require(entry.mediaPath.empty() || playlist.find(entry.mediaPath) < playlist.size());
  fuzz::require(!entry.mediaPath.starts_with('#'));
  if (entry.started) {
    (void)PlayPeriod{*entry.started, entry.length}.contains(std::chrono::system_clock::now());
  }
  (void)VirtualDJHistory::historyMetadata("", entry.playTime, entry.mediaPath);
  return 0;
}
