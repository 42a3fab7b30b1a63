#include "nowplaying/readers/TsafArchive.h"

#include "base/Text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace velmor {

namespace {

constexpr char textTag = 0x08;
constexpr char textEnd = 0x00;
constexpr std::size_t titleIDLength = 32;
constexpr double secondsPerDay = 86400;
/// Archives count seconds from 2001-01-01 00:00:00 UTC.
constexpr Seconds timeOrigin{978307200};

/// The little-endian number in the last bytes before `end`; 0 when there are too few.
template <typename Number, typename Bits>
Number readFloat(std::string_view content, std::size_t end) {
  if (end < sizeof(Bits)) return 0;
  Bits bits = 0;
  for (std::size_t back = 1; back <= sizeof(Bits); ++back)
    bits = static_cast<Bits>(bits << 8U) | static_cast<unsigned char>(content[end - back]);
  return std::bit_cast<Number>(bits);
}

bool isPositive(double number) {
  return std::isfinite(number) && number > 0;
}

bool isIdentifierDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f');
}

/// Where the key begins: its tag, its name, its end. `npos` when it is missing.
std::size_t findKey(std::string_view content, std::string_view key) {
  return content.find(textTag + std::string(key) + textEnd);
}

/// The text under the key, trimmed; "" when it is missing or not UTF-8.
std::string tsafString(std::string_view content, std::string_view key) {
  const auto marker = findKey(content, key);
  if (marker == std::string_view::npos || marker <= 2) return {};
  // The value ends right before the NUL that ends it, and begins after the tag before that.
  const auto end = marker - 1;
  auto tag = content.rfind(textTag, end - 1);
  if (tag == std::string_view::npos) tag = 0;
  if (tag + 1 >= end) return {};
  const auto value = content.substr(tag + 1, end - tag - 1);
  if (!text::isValidUtf8(value)) return {};
  return std::string(text::bounded(text::trimmed(value)));
}

/// The positive number under the key, stored in eight bytes or in four; 0 when missing.
double tsafFloat(std::string_view content, std::string_view key) {
  const auto marker = findKey(content, key);
  if (marker == std::string_view::npos) return 0;
  const auto wide = readFloat<double, std::uint64_t>(content, marker);
  // Four bytes read as eight look like an enormous duration.
  if (isPositive(wide) && !(key == "duration" && wide > secondsPerDay)) return wide;
  const double narrow = readFloat<float, std::uint32_t>(content, marker);
  return isPositive(narrow) && narrow <= secondsPerDay ? narrow : 0;
}

/// The identifier of the track; "" when missing.
std::string tsafTitleID(std::string_view content) {
  const auto marker = content.find("ADCMediaItemTitleID");
  if (marker == std::string_view::npos) return {};
  std::size_t length = 0;
  // An identifier that ends with the archive's last byte is not one: a text has its NUL.
  for (std::size_t position = marker; position + 1 < content.size(); ++position) {
    length = isIdentifierDigit(content[position]) ? length + 1 : 0;
    if (length == titleIDLength) {
      return std::string(content.substr(position + 1 - titleIDLength, titleIDLength));
    }
  }
  return {};
}

} // namespace

std::optional<HistoryItem> TsafArchive::parseHistoryItem(const Bytes& blob) {
  const std::string_view content(reinterpret_cast<const char*>(blob.data()), blob.size());
  if (!content.starts_with("TSAF") ||
      content.find("ADCHistorySessionItem") == std::string_view::npos) {
    return std::nullopt;
  }
  HistoryItem item;
  item.title = tsafString(content, "title");
  item.artist = tsafString(content, "artist");
  item.titleID = tsafTitleID(content);
  const double duration = tsafFloat(content, "duration");
  const double startTime = tsafFloat(content, "startTime");
  if (item.title.empty() || item.artist.empty() || duration <= 0 || startTime <= 0) {
    return std::nullopt;
  }
  item.period.duration = Seconds(duration);
  item.period.started = PlayPeriod::Moment(timeOrigin + Seconds(startTime));
  return item;
}

std::optional<TsafArchive::Bytes> TsafArchive::bytes(std::string_view hexString) {
  const auto digits = text::trimmed(hexString);
  if (digits.empty() || digits.size() % 2 != 0) return std::nullopt;
  Bytes result;
  result.reserve(digits.size() / 2);
  for (std::size_t position = 0; position < digits.size(); position += 2) {
    std::uint8_t byte = 0;
    const auto* const pair = digits.data() + position;
    const auto [end, error] = std::from_chars(pair, pair + 2, byte, 16);
    if (error != std::errc{} || end != pair + 2) return std::nullopt;
    result.push_back(byte);
  }
  return result;
}

} // namespace velmor
