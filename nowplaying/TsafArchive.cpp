#include "nowplaying/TsafArchive.h"

#include "base/Text.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>

namespace velmor {

namespace {

constexpr char textTag = 0x08;
constexpr char textEnd = 0x00;
constexpr std::size_t leastSize = 32;
constexpr std::size_t titleIDLength = 32;
constexpr double secondsPerDay = 86400;
/// Archives count seconds from 2001-01-01 00:00:00 UTC.
constexpr Seconds timeOrigin{978307200};

template <typename Number, typename Bits>
Number littleEndian(std::string_view bytes, std::ptrdiff_t at) {
  if (at < 0 || static_cast<std::size_t>(at) + sizeof(Bits) > bytes.size()) return 0;
  Bits bits = 0;
  for (std::size_t index = sizeof(Bits); index > 0; --index) {
    const auto byte = bytes[static_cast<std::size_t>(at) + index - 1];
    bits = static_cast<Bits>(bits << 8U) | static_cast<unsigned char>(byte);
  }
  return std::bit_cast<Number>(bits);
}

bool isPositive(double number) {
  return std::isfinite(number) && number > 0;
}

bool isIdentifierDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f');
}

} // namespace

TsafArchive::TsafArchive(const Bytes& blob)
    : content(reinterpret_cast<const char*>(blob.data()), blob.size()) {}

std::optional<HistoryItem> TsafArchive::parseHistoryItem(const Bytes& blob) {
  const TsafArchive archive(blob);
  if (blob.size() < leastSize || !archive.content.starts_with("TSAF") ||
      archive.content.find("ADCHistorySessionItem") == std::string_view::npos) {
    return std::nullopt;
  }
  HistoryItem item;
  item.title = archive.tsafString("title");
  item.artist = archive.tsafString("artist");
  item.titleID = archive.tsafTitleID();
  const double duration = archive.tsafFloat("duration");
  const double startTime = archive.tsafFloat("startTime");
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

std::string TsafArchive::tsafString(std::string_view key) const {
  const auto marker = findKey(key);
  if (!marker || *marker <= 2) return {};
  // The value ends right before the NUL that ends it, and begins after the tag before that.
  const auto end = *marker - 1;
  auto tag = content.rfind(textTag, end - 1);
  if (tag == std::string_view::npos) tag = 0;
  if (tag + 1 >= end) return {};
  const auto value = content.substr(tag + 1, end - tag - 1);
  return text::isValidUtf8(value) ? std::string(text::trimmed(value)) : std::string();
}

double TsafArchive::tsafFloat(std::string_view key) const {
  const auto marker = findKey(key);
  if (!marker) return 0;
  const auto position = static_cast<std::ptrdiff_t>(*marker);
  const double wide = readFloat64(position - 8);
  // Four bytes read as eight look like an enormous duration.
  if (isPositive(wide) && !(key == "duration" && wide > secondsPerDay)) return wide;
  const double narrow = readFloat32(position - 4);
  return isPositive(narrow) && narrow <= secondsPerDay ? narrow : 0;
}

std::string TsafArchive::tsafTitleID() const {
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

double TsafArchive::readFloat64(std::ptrdiff_t at) const {
  return littleEndian<double, std::uint64_t>(content, at);
}

float TsafArchive::readFloat32(std::ptrdiff_t at) const {
  return littleEndian<float, std::uint32_t>(content, at);
}

/// The position of the key's marker: its tag, its name and its end.
std::optional<std::size_t> TsafArchive::findKey(std::string_view key) const {
  const auto position = content.find(textTag + std::string(key) + textEnd);
  if (position == std::string_view::npos) return std::nullopt;
  return position;
}

} // namespace velmor
