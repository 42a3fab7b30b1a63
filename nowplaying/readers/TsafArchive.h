#pragma once

#include "nowplaying/readers/PlayPeriod.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// An entry of djay Pro's play history.
struct HistoryItem {
  /// Title and artist are never empty.
  std::string title;
  std::string artist;
  /// 32 lower-case hexadecimal digits that name the track in djay's library; "" when missing.
  std::string titleID;
  PlayPeriod period;
};

/// The "TSAF" archives in which djay Pro stores its records: values, each followed by its key. Only
/// what a history entry needs is read. Damaged or hostile bytes are safe. Any thread.
struct TsafArchive {
  using Bytes = std::vector<std::uint8_t>;

  /// The history entry in the archive; nothing when the bytes are not an archive, hold no history
  /// entry, or lack a title, an artist, a duration or a start.
  [[nodiscard]] static std::optional<HistoryItem> parseHistoryItem(const Bytes& blob);

  /// The bytes that a text of hexadecimal digits stands for, white space around it ignored; nothing
  /// for an empty text or any other text.
  [[nodiscard]] static std::optional<Bytes> bytes(std::string_view hexString);
};

} // namespace velmor
