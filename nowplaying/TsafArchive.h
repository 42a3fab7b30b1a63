#pragma once

#include "nowplaying/SeratoDetector.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// The "TSAF" archives in which djay Pro keeps its records: tagged values, each followed by its
/// key. Only what a history entry needs is read. Any bytes are safe.
class TsafArchive {
public:
  using Bytes = std::vector<std::uint8_t>;

  explicit TsafArchive(const Bytes& blob);

  /// The history entry in the archive; nothing when it is no archive, no history entry, or lacks
  /// title, artist, duration or start.
  [[nodiscard]] static std::optional<HistoryItem> parseHistoryItem(const Bytes& blob);

  /// The bytes that a text of hexadecimal digits stands for; nothing for an empty or other text.
  [[nodiscard]] static std::optional<Bytes> bytes(std::string_view hexString);

  /// The text under the key, trimmed; "" when it is missing or not UTF-8.
  [[nodiscard]] std::string tsafString(std::string_view key) const;

  /// The positive number under the key, kept in eight bytes or in four; 0 when missing.
  [[nodiscard]] double tsafFloat(std::string_view key) const;

  /// The media item's identifier; "" when missing.
  [[nodiscard]] std::string tsafTitleID() const;

  /// Little-endian numbers at a position; 0 when they do not lie within the archive.
  [[nodiscard]] double readFloat64(std::ptrdiff_t at) const;
  [[nodiscard]] float readFloat32(std::ptrdiff_t at) const;

private:
  [[nodiscard]] std::optional<std::size_t> findKey(std::string_view key) const;

  std::string_view content;
};

} // namespace velmor
