#include "base/Text.h"
#include "nowplaying/readers/VirtualDJHistory.h"
#include "tests/fuzz/FuzzTarget.h"

using namespace velmor;

/// The input is a play time, a line feed, a media path, a line feed and the track list.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto rest = fuzz::text(data, size);
  const auto takeLine = [&rest] {
    const auto line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    return line;
  };
  const auto playTime = takeLine();
  const auto mediaPath = takeLine();
  const auto [artist, title] = VirtualDJHistory::historyMetadata(rest, playTime, mediaPath);
  fuzz::require(artist.find('-') == std::string::npos && artist.find('\n') == std::string::npos);
  fuzz::require(text::trimmed(artist) == artist && text::trimmed(title) == title);
  return 0;
}
